// A log with one event as another computer forwards it: with its display texts (RenderingInfo) written out. The writer
// of the program never makes such events, so the bytes are put together here.
#pragma once

#include <filesystem>

namespace corvina::test {

// Event 4711 of provider "Remote-Provider" at level 2, task 9, opcode 77, with the texts "Remote message", "Remote
// level", "Remote task", "Remote opcode", "Remote channel", "Remote provider" and the keywords "First" and "Second".
// Its data is one element in UserData: an urgent Notice with Name "O'Neill", Count 16 and Items "first" and "second".
// False when the file cannot be written.
bool WriteForwardedLog(const std::filesystem::path& path);

}  // namespace corvina::test
