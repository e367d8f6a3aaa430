// Compiled with the headers that many tests share, so that these are compiled once.
