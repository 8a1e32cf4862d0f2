// A level without sources yet.
