;;; Sound, but never loaded: the manifest of its bundle cannot be read.

(kest-print (format nil "Layer states: ready~%"))
