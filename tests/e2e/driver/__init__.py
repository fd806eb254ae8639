"""Hands and eyes for the real program: a private world to run it in, its controls
over the accessibility bus, keys and pictures over X. The program knows of nothing.

Debian's own python3 with python3-gi; nothing from elsewhere.
"""
