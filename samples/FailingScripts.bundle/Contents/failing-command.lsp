;;; FAILLISP: an error in a command ends the command, not the host.

(defun fail-lisp-command ()
  (kest-print (format nil "dividing by nothing~%"))
  (/ 1 0))

(kest-register-command "FAILLISP" #'fail-lisp-command)
