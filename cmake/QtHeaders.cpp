// Nothing of its own: the headers that it is built with are read once for every library on Qt.
