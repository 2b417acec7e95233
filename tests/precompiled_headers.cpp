// A library needs a source file; this one is there for the headers that are compiled with it.
