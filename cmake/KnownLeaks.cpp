// In sanitized programs with a window: what the toolkit keeps until the process ends, by name. To see the
// name, an allocation's stack has to be unwound whole.
extern "C" const char* __asan_default_options();       // NOLINT: the sanitizer's names
extern "C" const char* __lsan_default_options();       // NOLINT
extern "C" const char* __lsan_default_suppressions();  // NOLINT

const char* __asan_default_options() {  // NOLINT
    return "fast_unwind_on_malloc=0";
}

const char* __lsan_default_options() {  // NOLINT
    return "print_suppressions=0";
}

// The textures of pictures, with the software renderer of Qt 6.4.
const char* __lsan_default_suppressions() {  // NOLINT
    return "leak:QSGRenderContext::textureForFactory\n";
}
