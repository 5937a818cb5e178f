"""Real documents of this machine, written in several formats, with copies of every degree of likeness."""
