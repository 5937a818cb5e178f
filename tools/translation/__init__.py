"""What tools/make_translation is made of: the rows of texts, the catalogues of translators, the modules of the program."""
