#include "embedded/evtx/channel_file_name.h"

namespace corvina::evtx {

std::wstring FileNameOfChannelPath(std::wstring_view channelPath) {
    std::wstring name;
    for (const wchar_t character : channelPath) {
        if (character == L'/' || character == L'\\') {
            name += EncodedSlash;
        } else {
            name += character;
        }
    }
    name += LogExtension;
    return name;
}

}  // namespace corvina::evtx
