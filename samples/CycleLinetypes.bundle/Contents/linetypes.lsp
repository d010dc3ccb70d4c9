;;; Sound, but never loaded: its bundle is part of a cycle.

(kest-print (format nil "Linetypes: ready~%"))
