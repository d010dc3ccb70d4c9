;;; BENDS: bend allowances of sheet metal, neutral layer at 0.44 of the thickness. Lengths in millimetres.

(defun bend-allowance (thickness radius)
  (* (/ pi 2) (+ radius (* 0.44 thickness))))

(defun bends-command ()
  (dolist (thickness '(1 1.5 2 3))
    (kest-print (format nil "sheet ~3,1f: a right-angled bend takes ~,2f~%"
                        thickness (bend-allowance thickness thickness)))))

(kest-register-command "BENDS" #'bends-command)
