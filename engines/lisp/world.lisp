(defpackage "KEST-HOST" (:use "CL"))
(in-package "KEST-HOST")

;;; The world that scripts meet: plain Common LISP, whose streams, errors and exits belong to the host. Package KEST-HOST
;;; is the inside; what scripts may call stands in package CL-USER. Functions with names in % are written in C++.
;;;
;;; A "native" text is the name of a file as the system has it: each character is a byte.

;;; Output goes to the host's console, a line at a time.

(defclass host-output (gray:fundamental-character-output-stream)
  ((line :initform (make-string-output-stream))
   (column :initform 0)))

(defvar *console* (make-instance 'host-output))

(defun print-line-so-far (stream)
  (let ((text (get-output-stream-string (slot-value stream 'line))))
    (unless (string= text "")
      (%print text))))

(defmethod gray:stream-write-char ((stream host-output) character)
  (write-char character (slot-value stream 'line))
  (cond ((char= character #\Newline)
         (setf (slot-value stream 'column) 0)
         (print-line-so-far stream))
        (t
         (incf (slot-value stream 'column))))
  character)

(defmethod gray:stream-write-string ((stream host-output) string &optional (start 0) end)
  (let* ((end (or end (length string)))
         (newline (position #\Newline string :start start :end end :from-end t)))
    (write-string string (slot-value stream 'line) :start start :end end)
    (cond (newline
           (setf (slot-value stream 'column) (- end newline 1))
           (print-line-so-far stream))
          (t
           (incf (slot-value stream 'column) (- end start)))))
  string)

(defmethod gray:stream-line-column ((stream host-output))
  (slot-value stream 'column))

(defmethod gray:stream-start-line-p ((stream host-output))
  (zerop (slot-value stream 'column)))

(defmethod gray:stream-finish-output ((stream host-output))
  (print-line-so-far stream)
  nil)

(defmethod gray:stream-force-output ((stream host-output))
  (print-line-so-far stream)
  nil)

;; One that a script closes stays open for the next script.
(defmethod gray:close ((stream host-output) &key abort)
  (declare (ignore abort))
  (print-line-so-far stream)
  t)

;;; Errors. An error that no script handles would start the debugger; that is where the host takes over.

(defvar *tag* nil "The innermost catch tag of CALLING.")
(defvar *stack-full* (list "The stack is full: the recursion is too deep." nil) "What a full stack throws to it.")
(defvar *escape* nil "Ends what the host has called, with a condition or a text.")
(defvar *place* nil "The place of the top-level form that is being loaded.")

(defstruct place
  file ; as shown; NIL for an expression
  source position stream)

(defun one-line (text)
  (let ((words nil) (begin nil))
    (flet ((blank (character) (member character '(#\Newline #\Return #\Tab #\Space #\Page))))
      (dotimes (i (length text))
        (if (blank (char text i))
            (when begin (push (subseq text begin i) words) (setf begin nil))
            (unless begin (setf begin i))))
      (when begin (push (subseq text begin) words)))
    (format nil "~{~A~^ ~}" (nreverse words))))

(defun replaced (text old new)
  (let ((at (search old text)))
    (if (and at (plusp (length old)))
        (concatenate 'string (subseq text 0 at) new (replaced (subseq text (+ at (length old))) old new))
        text)))

(defun line-of (place)
  (1+ (count #\Newline (place-source place) :end (place-position place))))

(defun calling (function)
  "Calls FUNCTION. NIL; or, when it did not return, a list of what it ended with and the *PLACE* of that."
  (let ((tag (list nil)))
    (catch tag
      (let* ((*tag* tag)
             (*escape* (lambda (what) (throw tag (list what *place*))))
             (ext:*invoke-debugger-hook* (lambda (condition hook)
                                           (declare (ignore hook))
                                           (funcall *escape* condition)))
             (*debugger-hook* nil))
        (restart-case (funcall function)
          (abort ()
            :report "End what the host has called."
            (funcall *escape* "The script was aborted.")))
        nil))))

(defun condition-text (condition)
  "The report of CONDITION; its type, when it has none or its report fails."
  (let* ((text nil)
         (failure (calling (lambda () (setf text (princ-to-string condition))))))
    (if (or failure (eql (search "#<" text) 0) (string= (one-line text) ""))
        (format nil "~A~:[~;, and the report of this condition failed~]"
                (prin1-to-string (type-of condition)) failure)
        text)))

(defun problem-text (failure)
  (destructuring-bind (what place) failure
    (let* ((*print-pretty* nil) (*print-readably* nil) (*print-circle* t) (*print-length* 20) (*print-level* 5)
           (*place* nil)
           (text (if (stringp what) what (condition-text what))))
      (when place
        (dolist (shown (list (prin1-to-string (place-stream place)) (princ-to-string (place-stream place))))
          (setf text (replaced text shown "the text")))
        (when (place-file place)
          (setf text (format nil "~A (~A, line ~D)" text (place-file place) (line-of place)))))
      (one-line text))))

;; The last word, where a script has taken the hooks away.
(defun si::default-debugger (condition)
  (funcall *escape* condition))

;;; The host decides when the process ends.

(defun ext:quit (&rest arguments)
  (declare (ignore arguments))
  (error "A script cannot end the host."))
(setf (fdefinition 'ext:exit) #'ext:quit
      (fdefinition 'si::exit-process) #'ext:quit)

;; The host, its console and what this file keeps are of one thread.
(defun no-threads (&rest arguments)
  (declare (ignore arguments))
  (error "A script of this host has no threads of its own."))
(setf (fdefinition 'mp:process-enable) #'no-threads
      (fdefinition 'mp:process-run-function) #'no-threads)

;;; Names of files.

(defun native-pathname-text (pathname)
  (with-output-to-string (text)
    (let ((directory (pathname-directory pathname)))
      (when (eq (first directory) :absolute)
        (write-char #\/ text))
      (dolist (part (rest directory))
        (write-string (case part ((:up :back) "..") (t part)) text)
        (write-char #\/ text)))
    (when (pathname-name pathname)
      (write-string (pathname-name pathname) text))
    (when (pathname-type pathname)
      (write-char #\. text)
      (write-string (pathname-type pathname) text))))

(defun split (text character)
  (loop with begin = 0
        for at = (position character text :start begin)
        collect (subseq text begin at)
        while at
        do (setf begin (1+ at))))

(defun native-pathname (native)
  "The pathname of a file by parts: parsing would take the characters * ? [ and \\ for more than they are."
  (let* ((parts (split native #\/))
         (file (first (last parts)))
         (dot (position #\. file :from-end t))
         (type (and dot (plusp dot) (subseq file (1+ dot))))
         (folders (remove "" (butlast parts) :test #'string=)))
    (make-pathname :directory (and (rest parts)
                                   (cons (if (string= (first parts) "") :absolute :relative)
                                         (substitute :up ".." folders :test #'equal)))
                   :name (if type (subseq file 0 dot) file)
                   :type type
                   :version :newest)))

(defun native-candidates (file)
  (if (stringp file)
      (let ((native (%native file)))
        (list (if (eql (position #\/ native) 0)
                  native
                  (concatenate 'string
                               (native-pathname-text (make-pathname :name nil :type nil :version nil
                                                                    :defaults *default-pathname-defaults*))
                               native))))
      ;; A pathname is of bytes when it came from the system, of characters when a script spelled it.
      (let ((text (native-pathname-text (merge-pathnames (translate-logical-pathname (pathname file))))))
        (if (some (lambda (character) (> (char-code character) 127)) text)
            (list text (%native-parts text))
            (list text)))))

(defun native-file (file)
  "The native text of the file that LOAD means by FILE."
  (let ((candidates (native-candidates file)))
    (or (find-if #'%exists candidates)
        (loop for native in candidates
              thereis (find-if #'%exists (list (concatenate 'string native ".lsp")
                                               (concatenate 'string native ".lisp"))))
        (first candidates))))

;;; LOAD of source text, whatever the file's extension.

(define-condition source-unreadable (file-error)
  ((text :initarg :text))
  (:report (lambda (condition stream)
             (write-string (slot-value condition 'text) stream))))

(defun begin-of-form (source from)
  "The position of the first character at or after FROM that is neither blank nor comment."
  (let ((end (length source)))
    (loop
      (let* ((at (position-if-not (lambda (character)
                                    (member character '(#\Space #\Tab #\Newline #\Return #\Page)))
                                  source :start from))
             (next (and at (< (1+ at) end) (char source (1+ at)))))
        (cond ((null at)
               (return end))
              ((char= (char source at) #\;)
               (setf from (or (position #\Newline source :start at) end)))
              ((and (char= (char source at) #\#) (eql next #\|))
               (setf from (end-of-comment source at)))
              (t
               (return at)))))))

(defun end-of-comment (source from)
  "The position after the comment, which may hold others, that begins at FROM with #|."
  (let ((depth 0) (at from) (end (length source)))
    (loop
      (when (>= (1+ at) end)
        (return end))
      (let ((one (char source at)) (next (char source (1+ at))))
        (cond ((and (char= one #\#) (char= next #\|))
               (incf depth)
               (incf at 2))
              ((and (char= one #\|) (char= next #\#))
               (decf depth)
               (incf at 2)
               (when (zerop depth)
                 (return at)))
              (t
               (incf at)))))))

(defun load-forms (stream place print)
  (loop
    (when place
      (setf (place-position place) (begin-of-form (place-source place) (file-position stream))))
    (let ((form (read stream nil stream)))
      (when (eq form stream)
        (return t))
      (let ((values (multiple-value-list (eval form))))
        (when print
          (format t "~{~S~%~}" values))))))

(defun load-file (file verbose print if-does-not-exist)
  (let ((native (native-file file)))
    (if (and (not if-does-not-exist) (not (%exists native)))
        nil
        (multiple-value-bind (source problem) (%read-source native)
          (when problem
            (error 'source-unreadable :pathname (native-pathname native)
                                      :text (format nil "The file ~A cannot be loaded: ~A." (%shown native) problem)))
          (when verbose
            (format t ";;; Loading ~A~%" (%shown native)))
          (with-input-from-string (stream source)
            (let* ((*load-pathname* (native-pathname native))
                   (*load-truename* (native-pathname (%truename native)))
                   (*place* (make-place :file (%shown native) :source source :position 0 :stream stream)))
              (load-forms stream *place* print)))))))

(ext:package-lock "COMMON-LISP" nil)
(defun cl:load (file &key (verbose *load-verbose*) (print *load-print*) (if-does-not-exist :error)
                       external-format search-list)
  "Source files are UTF-8."
  (declare (ignore external-format search-list))
  (let ((*package* *package*) (*readtable* *readtable*))
    (if (streamp file)
        (let ((*load-pathname* nil) (*load-truename* nil) (*place* nil))
          (load-forms file nil print))
        (load-file file verbose print if-does-not-exist))))
(ext:package-lock "COMMON-LISP" t)

;;; Commands. The host knows a command by its number.

(defvar *functions* (make-hash-table) "By number.")
(defvar *numbers* (make-hash-table :test #'equal) "The number that the host has for a name.")
(defvar *last-number* 0)
(defvar *registered* nil "The numbers that what the host has called registered.")

(defun require-type (value type)
  (unless (typep value type)
    (error 'type-error :datum value :expected-type type)))

(defun forget-command (number)
  (destructuring-bind (&optional name function) (gethash number *functions*)
    (declare (ignore function))
    (remhash number *functions*)
    (when (eql (gethash name *numbers*) number)
      (remhash name *numbers*))))

(defun cl-user::kest-register-command (name function)
  "Has the host call FUNCTION, of no arguments, for the command NAME. T, or NIL when the host refuses."
  (require-type name 'string)
  (require-type function '(or function (and symbol (not null))))
  (let ((number (incf *last-number*)) (key (%upper-case name)))
    (when (%register name number)
      (let ((replaced (gethash key *numbers*)))
        (when replaced
          (forget-command replaced)))
      (setf (gethash number *functions*) (list key function)
            (gethash key *numbers*) number)
      (push number *registered*)
      t)))

(defun cl-user::kest-print (text)
  "Prints TEXT to the host's console as it stands."
  (require-type text 'string)
  (write-string text *console*)
  (print-line-so-far *console*)
  nil)

(defun cl-user::kest-host-version ()
  (%version))

;;; What the host calls.

(defun mend-user-package ()
  "Scripts share a package; one that hides what Common LISP has there must not stop the next from being loaded."
  (let ((user (find-package "CL-USER")))
    (mapc (lambda (symbol) (unintern symbol user)) (package-shadowing-symbols user))
    (unless (member (find-package "CL") (package-use-list user))
      (do-external-symbols (symbol "CL")
        (let ((other (find-symbol (symbol-name symbol) user)))
          (unless (eq other symbol)
            (unintern other user))))
      (use-package "CL" user))))

(defvar *pretty* *print-pretty*)

(defun visiting (function)
  "Calls FUNCTION as a script of the host. NIL, or why it failed, in one line."
  (print-line-so-far *console*) ; of a script that had the host call this one
  (mend-user-package)
  (let* ((*standard-output* *console*) (*error-output* *console*) (*trace-output* *console*)
         (*standard-input* (make-concatenated-stream))
         (*terminal-io* (make-two-way-stream *standard-input* *console*))
         (*query-io* *terminal-io*) (*debug-io* *terminal-io*)
         (*package* (find-package "CL-USER")) (*readtable* (copy-readtable nil)) (*read-base* 10) (*read-eval* t)
         (*read-default-float-format* 'single-float) (*print-base* 10) (*print-radix* nil) (*print-case* :upcase)
         (*print-escape* t) (*print-readably* nil) (*print-pretty* *pretty*) (*print-circle* nil) (*print-length* nil)
         (*print-level* nil) (*print-lines* nil) (*print-array* t) (*print-gensym* t) (*print-right-margin* nil)
         (*read-suppress* nil) (*load-verbose* nil) (*load-print* nil) (*load-pathname* nil) (*load-truename* nil)
         (*default-pathname-defaults* #P"") ; the system's working directory, wherever that is
         (*place* nil))
    (let ((failure (calling function)))
      (prog1 (and failure (problem-text failure))
        (print-line-so-far *console*)))))

(defun evaluate (text)
  (let* ((*registered* nil)
         (problem (visiting (lambda ()
                              (with-input-from-string (stream text)
                                (let ((*place* (make-place :source text :position 0 :stream stream)))
                                  (load-forms stream *place* nil)))))))
    (when problem
      (mapc #'forget-command *registered*))
    problem))

(defun run (number)
  (let ((*registered* nil) (function (second (gethash number *functions*))))
    (if function
        (visiting function)
        "The command is no longer there.")))

(setf ext:*default-external-format* :utf-8)
