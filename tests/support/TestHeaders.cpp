// The carrier of the precompiled headers; it has nothing to test itself.
int main() { return 0; }
