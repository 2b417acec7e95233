// A library cannot be without any code; the messages are in its resources.
extern "C" __declspec(dllexport) int CountMessages() {
    return 4;
}
