"""Pictures, films and music of this machine, with copies of every degree of likeness."""
