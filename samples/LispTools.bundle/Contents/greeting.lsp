;;; Says hello when the host starts.

(kest-print (format nil "LISP tools: ready on host version ~a~%" (kest-host-version)))
