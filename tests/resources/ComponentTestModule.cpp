// A module for the loader tests: two entry points, and none of the names they also ask for.
extern "C" __attribute__((visibility("default"))) int ComponentTestEntry() {
    return 42;
}
extern "C" __attribute__((visibility("default"))) int ComponentTestSecond() {
    return 7;
}
