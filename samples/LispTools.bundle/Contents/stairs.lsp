;;; STAIRS: risers and goings of a flight of stairs, for a list of storey heights.
;;; A comfortable step follows 2 risers + 1 going = 630 mm, with a riser near 175 mm. Lengths in millimetres.

(defun stairs-line (height)
  (let* ((risers (round height 175))
         (riser (/ height risers))
         (going (- 630 (* 2 riser))))
    (format nil "height ~5d: ~2d risers of ~,1f, goings of ~,1f, run ~d~%"
            height risers (float riser) (float going) (round (* going (- risers 1))))))

(defun stairs-command ()
  (dolist (height '(2550 2750 3000 3250))
    (kest-print (stairs-line height))))

(kest-register-command "STAIRS" #'stairs-command)
