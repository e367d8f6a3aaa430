// Compiled with the headers that many rooms share, so that these are compiled once.
