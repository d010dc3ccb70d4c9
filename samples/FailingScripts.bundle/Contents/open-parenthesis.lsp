;;; Cannot be read: the parenthesis of DEFUN is not closed.

(defun area (width height)
  (* width height)
