// The files of stored filters: their names, and that none is lost.
#include "query/stored_filter_folder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>

#include "base/path_text.h"
#include "platform/error_codes.h"
#include "platform/temporary_folder.h"
#include "query/stored_filter_name.h"
#include "support/doubles_locale.h"

namespace corvina {
namespace {

TEST(StoredFilterName, FilesAreNamedAfterTheirFilters) {
    struct Case {
        std::wstring Filter;
        std::wstring File;
    };
    const std::wstring longName(200, L'x');
    for (const Case& item :
         {Case{L"Failed logons", L"Failed logons.xml"}, Case{L"", L"Filter.xml"},
          Case{L" a/b\\c:d*e?f\"g<h>i|j. . ", L"a_b_c_d_e_f_g_h_i_j.xml"}, Case{L"..", L"Filter.xml"},
          Case{L"..\\..\\evil", L".._.._evil.xml"}, Case{L"nul", L"_nul.xml"}, Case{L"Com\xB9.a", L"_Com\xB9.a.xml"},
          Case{L"COM10", L"COM10.xml"}, Case{L"AUX .txt", L"_AUX .txt.xml"}, Case{L"a\r\n\tb\x7F", L"a___b_.xml"},
          Case{std::wstring(L"\0", 1) + std::wstring(1, 0xD83D), L"__.xml"},
          Case{L"\U0001F600 \x4E2D", L"\U0001F600 \x4E2D.xml"}, Case{longName, longName.substr(0, 60) + L".xml"}}) {
        EXPECT_EQ(StoredFilterFileName(item.Filter, 1), item.File);
        EXPECT_TRUE(IsPlainFileName(item.File)) << testing::PrintToString(item.File);
    }
    EXPECT_EQ(StoredFilterFileName(L"nul", 2), L"_nul 2.xml");
    const std::wstring cut = StoredFilterFileName(std::wstring(59, L'x') + L"\U0001F600", 1);
    EXPECT_TRUE(IsPlainFileName(cut)) << "a pair of surrogates is kept whole or left out";
}

TEST(StoredFilterName, NamesThatMeanSomethingElseAreRefused) {
    for (const std::wstring name : {L"",
                                    L".",
                                    L"..",
                                    L"..\\a.xml",
                                    L"../a.xml",
                                    L"sub/a.xml",
                                    L"C:\\a.xml",
                                    L"C:a.xml",
                                    L"\\\\server\\share\\a.xml",
                                    L"\\\\.\\PhysicalDrive0",
                                    L"a.xml:stream",
                                    L"a.xml.",
                                    L"a.xml ",
                                    L" a.xml",
                                    L"con",
                                    L"NUL.xml",
                                    L"nul .xml",
                                    L"COM1",
                                    L"lpt\xB2.xml",
                                    L"CONIN$",
                                    L"a*.xml",
                                    L"a\n.xml"}) {
        EXPECT_FALSE(IsPlainFileName(name)) << testing::PrintToString(name);
    }
    EXPECT_FALSE(IsPlainFileName(std::wstring(250, L'a')));
    EXPECT_TRUE(IsPlainFileName(L"My filter.txt"));
}

class StoredFilterFolderTest : public testing::Test {
  protected:
    void Write(const std::string& name, std::string_view bytes) const {
        std::ofstream(temporary_.Path / name, std::ios::binary) << bytes;
    }
    std::string Bytes(std::wstring_view name) const {
        std::ifstream file(temporary_.Path / PathFromText(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::set<std::wstring> Names() const {
        std::set<std::wstring> names;
        for (const auto& entry : std::filesystem::directory_iterator(temporary_.Path)) {
            names.insert(TextOfPath(entry.path().filename()));
        }
        return names;
    }

    TemporaryFolder temporary_;
    test::PlainLocale locale_;
    StoredFilterFolder folder_{TextOfPath(temporary_.Path), locale_};
    StoredFilterFault fault_;
};

TEST_F(StoredFilterFolderTest, FiltersAreSavedUnderNamesOfTheirOwn) {
    const StoredFilter logons{L"Logons", {}, L"<QueryList/>", false};
    const StoredFilter others{L"LOGONS", {}, {}, false};
    EXPECT_EQ(folder_.Save(logons, L"", fault_), L"Logons.xml");
    EXPECT_EQ(folder_.Save(others, L"", fault_), L"LOGONS 2.xml");
    EXPECT_EQ(folder_.Load(L"Logons.xml", fault_), logons);
    EXPECT_EQ(folder_.Load(L"LOGONS 2.xml", fault_), others);

    StoredFilter changed = logons;
    changed.Name = L"Logons at night";
    EXPECT_EQ(folder_.Save(changed, L"Logons.xml", fault_), L"Logons.xml") << "it stays where it is";
    EXPECT_EQ(folder_.Load(L"Logons.xml", fault_), changed);
    EXPECT_EQ(folder_.Save(changed, L"..\\Logons.xml", fault_), L"Logons at night.xml");
    EXPECT_EQ(Names(), (std::set<std::wstring>{L"LOGONS 2.xml", L"Logons.xml", L"Logons at night.xml"}));
    EXPECT_FALSE(std::filesystem::exists(temporary_.Path.parent_path() / "Logons.xml"));
}

TEST_F(StoredFilterFolderTest, AFileThatCannotBeReadIsNeitherOverwrittenNorLost) {
    const StoredFilter filter{L"Logons", {}, {}, false};
    for (const std::string bytes : {"", "<StoredFilter>", "<StoredFilter Version='2'/>",
                                    "<StoredFilter><Criteria><Levels>x</Levels></Criteria></StoredFilter>"}) {
        Write("Logons.xml", bytes);
        const auto name = folder_.Save(filter, L"Logons.xml", fault_);
        ASSERT_EQ(name, L"Logons 2.xml") << bytes;
        EXPECT_EQ(Bytes(L"Logons.xml"), bytes);
        EXPECT_EQ(folder_.Load(*name, fault_), filter);
        std::filesystem::remove(temporary_.Path / "Logons 2.xml");
    }
    Write("Logons.xml", "<StoredFilter><Mine/></StoredFilter>");
    EXPECT_EQ(folder_.Save(filter, L"Logons.xml", fault_), L"Logons.xml");
    EXPECT_NE(Bytes(L"Logons.xml").find("<Mine />"), std::string::npos);
}

TEST_F(StoredFilterFolderTest, FailuresAreReportedAndChangeNothing) {
    EXPECT_FALSE(folder_.Load(L"missing.xml", fault_));
    EXPECT_EQ(fault_.ErrorCode, error::FileNotFound);
    std::filesystem::create_directory(temporary_.Path / "folder.xml");
    EXPECT_FALSE(folder_.Load(L"folder.xml", fault_));
    EXPECT_EQ(fault_.ErrorCode, error::AccessDenied);
    EXPECT_FALSE(folder_.Load(L"../" + TextOfPath(temporary_.Path.filename()) + L"/a.xml", fault_));
    EXPECT_EQ(fault_.Text, L"this is not the name of a file in the folder of stored filters");
    Write("large.xml", std::string(MaximumStoredFilterSize + 1, ' '));
    EXPECT_FALSE(folder_.Load(L"large.xml", fault_));
    EXPECT_EQ(fault_.Text, L"the file is too large for a stored filter");

    StoredFilter filter{L"x", {}, std::wstring(MaximumStoredFilterSize, L'x'), false};
    EXPECT_FALSE(folder_.Save(filter, L"", fault_)) << "it could not be read again";
    EXPECT_EQ(fault_.Text, L"the file is too large for a stored filter");
    filter.Query.clear();
    filter.Criteria.Time.From.Month = 13;
    EXPECT_FALSE(folder_.Save(filter, L"", fault_));
    EXPECT_FALSE(fault_.Text.empty());
    EXPECT_EQ(Names(), (std::set<std::wstring>{L"folder.xml", L"large.xml"}));

    const StoredFilterFolder nowhere(TextOfPath(temporary_.Path / "gone"), locale_);
    EXPECT_FALSE(nowhere.Save({}, L"a.xml", fault_));
    EXPECT_EQ(fault_.ErrorCode, error::PathNotFound);
}

}  // namespace
}  // namespace corvina
