;;; 图框：各图幅的边框尺寸。装订边 25 毫米，其余各边 10 毫米（A3、A4 为 5 毫米）。

(defun frame-line (sheet)
  (destructuring-bind (name width height margin) sheet
    (format nil "~a 图框 ~d × ~d 毫米~%" name (- width 25 margin) (- height (* 2 margin)))))

(defun frame-command ()
  (dolist (sheet '(("A0" 1189 841 10) ("A1" 841 594 10) ("A2" 594 420 10) ("A3" 420 297 5) ("A4" 297 210 5)))
    (kest-print (frame-line sheet))))

(kest-register-command "图框" #'frame-command)
