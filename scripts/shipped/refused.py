"""What ends a listing of shipped files."""


class Refused(Exception):
    """What is wrong, for people: where, and what was expected."""
