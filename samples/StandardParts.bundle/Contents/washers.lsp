;;; Washers, for the LISP files of other bundles: all of them share one world. Dimensions in millimetres.

(defparameter *washers*
  '((6 6.4 12 1.6) (8 8.4 16 1.6) (10 10.5 20 2) (12 13 24 2.5) (16 17 30 3)))

(defun washer (thread)
  "Inner diameter, outer diameter and thickness of the washer for a thread, or NIL."
  (rest (assoc thread *washers*)))

(kest-print (format nil "Standard parts: ~d washers~%" (length *washers*)))
