#include <windows.h>

#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <io.h>
#include <string>
#include <vector>

#include "base/utf.h"
#include "commands.h"

int wmain(int count, wchar_t** arguments) {
    // The console shows UTF-8 while the program runs; its own setting comes back at the end.
    const UINT codePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    int result = corvina::tools::SomeFailed;
    try {
        std::vector<std::string> texts;
        for (int index = 1; index < count; ++index) {
            texts.push_back(corvina::Utf8FromWide(arguments[index]));
        }
        result = corvina::tools::Run(texts);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "corvina-logs: %s\n", exception.what());
    }
    if (codePage != 0) {
        SetConsoleOutputCP(codePage);
    }
    return result;
}
