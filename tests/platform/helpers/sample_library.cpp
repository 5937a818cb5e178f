// A shared library for the tests of loading one.
#ifdef _WIN32
#define SAMPLE_EXPORT extern "C" __declspec(dllexport)
#else
#define SAMPLE_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

struct Farewell {
    ~Farewell()
    {
        if (gone != nullptr)
            *gone = true;
    }
    bool* gone = nullptr;
};

Farewell farewell;

}  // namespace

SAMPLE_EXPORT int sampleAnswer()
{
    return 42;
}

// The flag is set when the library is unloaded.
SAMPLE_EXPORT void sampleTellUnloading(bool* gone)
{
    farewell.gone = gone;
}
