;;; WASHERS: the washers that another bundle, StandardParts, knows. The function WASHER is that bundle's.

(defun washers-command ()
  (dolist (thread '(6 8 10 12 16))
    (destructuring-bind (inner outer thickness) (washer thread)
      (kest-print (format nil "washer ~d: ~,1f x ~,1f x ~,1f~%" thread inner outer thickness)))))

(kest-register-command "WASHERS" #'washers-command)
