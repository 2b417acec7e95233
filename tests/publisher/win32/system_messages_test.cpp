// The texts that are read out of program files here, against those that the system reads out of the same files.
#include <windows.h>
//
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "embedded/publisher/image_resources.h"
#include "embedded/publisher/message_table.h"
#include "publisher/image_builder.h"

namespace corvina::publisher {
namespace {

constexpr DWORD English = 0x0409;

struct LibraryCloser {
    void operator()(HMODULE library) const { FreeLibrary(library); }
};
using Library = std::unique_ptr<std::remove_pointer_t<HMODULE>, LibraryCloser>;

Library LoadAsData(const std::filesystem::path& path) {
    return Library(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
}

// What the system gives for a message, without the line break at its end.
std::optional<std::wstring> SystemText(HMODULE library, std::uint32_t id) {
    std::vector<wchar_t> buffer(32'768);
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_IGNORE_INSERTS, library, id,
                                        English, buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
    if (length == 0 && GetLastError() != ERROR_SUCCESS) {
        return std::nullopt;
    }
    std::wstring text(buffer.data(), length);
    text.resize(text.size() - (text.ends_with(L"\r\n") ? 2 : text.ends_with(L"\n") ? 1 : 0));
    return text;
}

// The English table of a file.
MessageTable OwnTable(const std::filesystem::path& path) {
    std::uint32_t error = 0;
    const auto image = ImageResources::Open(OpenRandomAccessFile(path, error));
    EXPECT_NE(image, nullptr) << path << " " << error;
    if (image != nullptr) {
        for (const ImageResource& resource : image->OfType(MessageTableType)) {
            if (resource.Language == English) {
                return MessageTable(image->Read(resource));
            }
        }
    }
    return MessageTable({});
}

// Compares some numbers and returns how many of them have a text.
std::size_t CountAlike(const std::filesystem::path& path, const std::vector<std::uint32_t>& ids) {
    const Library library = LoadAsData(path);
    EXPECT_NE(library.get(), nullptr) << path << " " << GetLastError();
    if (library == nullptr) {
        return 0;
    }
    const MessageTable table = OwnTable(path);
    std::size_t count = 0;
    for (const std::uint32_t id : ids) {
        const std::optional<std::wstring> text = SystemText(library.get(), id);
        EXPECT_EQ(table.Find(id), text) << path << " " << id;
        count += text ? 1 : 0;
    }
    return count;
}

std::filesystem::path ProgramFolder() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
}

TEST(SystemMessages, OfACompiledLibraryAreTheSame) {
    EXPECT_EQ(
        CountAlike(ProgramFolder() / L"message_library.dll", {1, 7, 1842, 1843, 0xC0040007, 0xC0040008, 0xC0040009}),
        4U);
}

TEST(SystemMessages, OfWrittenImagesAreTheSame) {
    for (const bool is64Bit : {false, true}) {
        const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                           ("corvina_messages_" + std::to_string(GetCurrentProcessId()) + ".dll");
        std::ofstream(path, std::ios::binary)
            << MakeImage({MakeMessageTable(PumpMessages()), MakeMessageTable({{1, L"eins"}}, 0x0407, false)}, is64Bit);
        EXPECT_EQ(CountAlike(path, {0x10000001, 0x3001000B, 0x70000001, 0x70000003, 0xB0010001}), 4U) << is64Bit;
        std::filesystem::remove(path);
    }
}

// The largest table that every system has: the texts of its error codes.
TEST(SystemMessages, OfTheSystemItselfAreTheSame) {
    wchar_t folder[MAX_PATH] = {};
    GetSystemDirectoryW(folder, MAX_PATH);
    const std::filesystem::path path = std::filesystem::path(folder) / L"kernelbase.dll";
    const Library library = LoadAsData(path);
    ASSERT_NE(library.get(), nullptr);
    const MessageTable table = OwnTable(path);
    if (table.IsEmpty()) {
        GTEST_SKIP() << "this system keeps the texts in another file";
    }
    std::size_t count = 0;
    for (std::uint32_t id = 0; id < 20'000; ++id) {
        const std::optional<std::wstring> text = SystemText(library.get(), id);
        EXPECT_EQ(table.Find(id), text) << id;
        count += text ? 1 : 0;
    }
    EXPECT_GT(count, 500U);
}

}  // namespace
}  // namespace corvina::publisher
