#include "platform/win32/system_library.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace corvina {
namespace {

std::filesystem::path ModuleFile(HMODULE module) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(module, path, MAX_PATH - 1);
    return path;
}

bool LoadsByName(const wchar_t* fileName) {
    const HMODULE module = LoadLibraryW(fileName);
    if (module == nullptr) {
        return false;
    }
    FreeLibrary(module);
    return true;
}

TEST(SystemLibraryTest, IsNeverTakenFromTheProgramsFolder) {
    const std::filesystem::path programFolder = ModuleFile(nullptr).parent_path();
    const std::filesystem::path copy = programFolder / "wevtapi.dll";
    std::filesystem::copy_file(programFolder / "impostor.dll", copy, std::filesystem::copy_options::overwrite_existing);
    ASSERT_TRUE(LoadsByName(L"impostor.dll")) << "the danger that this test is about must be there";

    {
        const SystemLibrary eventLog(L"wevtapi.dll");
        ASSERT_TRUE(eventLog);
        EXPECT_EQ(eventLog.Find<int (*)()>("IsImpostor"), nullptr);
        EXPECT_NE(eventLog.Find<int (*)()>("EvtQuery"), nullptr);
        EXPECT_FALSE(std::filesystem::equivalent(ModuleFile(eventLog.Get()).parent_path(), programFolder));
    }
    EXPECT_FALSE(SystemLibrary(L"impostor.dll"));
    EXPECT_EQ(SystemLibrary(L"impostor.dll").Find<int (*)()>("IsImpostor"), nullptr);

    HardenLibrarySearch();
    EXPECT_FALSE(LoadsByName(L"impostor.dll"));
    EXPECT_TRUE(LoadsByName(L"winhttp.dll"));
    std::filesystem::remove(copy);
}

}  // namespace
}  // namespace corvina
