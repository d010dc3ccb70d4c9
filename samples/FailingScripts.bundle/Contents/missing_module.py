"""Cannot be run: it needs a module that nobody has installed."""

import survey_instruments

survey_instruments.connect()
