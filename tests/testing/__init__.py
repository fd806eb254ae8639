"""The UI test driver, stand-ins and helpers that tests, scripts and benchmarks share.

Entry points put the folder `tests` on sys.path and import from here. Needs Debian's
own python3 with python3-gi, nothing from elsewhere.
"""
