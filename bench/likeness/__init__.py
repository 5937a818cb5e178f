"""Sets of files whose likeness is known: what makes them, and what judges a search by them."""
