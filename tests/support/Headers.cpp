// Nothing of its own: what it is built with is read once for every test.
