// What a query builder asks for, as a test sets it.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "query/query_builder.h"
#include "support/doubles_locale.h"
#include "support/doubles_ports.h"

namespace corvina::test {

// A dialog whose controls hold some criteria.
class CriteriaDialog final : public FilterDialogValues {
  public:
    explicit CriteriaDialog(const FilterCriteria& criteria) : criteria_(criteria) {}

    std::wstring BoxText(FilterBox box) const override {
        switch (box) {
            case FilterBox::Channels:
                return criteria_.Channels;
            case FilterBox::EventIds:
                return criteria_.EventIds;
            case FilterBox::Keywords:
                return criteria_.Keywords;
            case FilterBox::Providers:
                return criteria_.Providers;
            case FilterBox::User:
                return criteria_.User;
            case FilterBox::Computer:
                return criteria_.Computer;
        }
        return {};
    }
    TimeCriterion Time() const override { return criteria_.Time; }
    LevelMarks Levels() const override { return criteria_.Levels; }

  private:
    FilterCriteria criteria_;
};

class TestReachability final : public ComputerReachability {
  public:
    bool IsReachable(const std::wstring& computer) override {
        Asked.push_back(computer);
        return Reachable.contains(computer);
    }

    std::set<std::wstring> Reachable;
    std::vector<std::wstring> Asked;
};

class TestKeywordTable final : public KeywordTable {
  public:
    std::vector<KeywordRecord> KeywordsOfChannels(std::wstring_view channels) override {
        AskedChannels.emplace_back(channels);
        return Records;
    }

    std::vector<KeywordRecord> Records;
    std::vector<std::wstring> AskedChannels;
};

// A builder and everything around it.
struct QueryBuilding {
    PlainLocale Locale;
    TestAccounts AccountNames;
    TestReachability Reachability;
    TestKeywordTable Keywords;
    RecordingPrompts Boxes;
    i18n::Language Language{i18n::English};
    CurrentFilter Current;
    QueryBuilder Builder{{Locale, AccountNames, Reachability, Keywords, Boxes, Language}};
};

}  // namespace corvina::test
