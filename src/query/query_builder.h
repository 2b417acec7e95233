// Builds the query of a filter or custom view: every criterion becomes a fragment, the fragments are joined to a
// condition, and the condition is asked of every chosen channel.
#pragma once

#include <string>
#include <string_view>

#include "i18n/language.h"
#include "platform/accounts.h"
#include "platform/computer_reachability.h"
#include "platform/locale_services.h"
#include "platform/prompts.h"
#include "query/filter_criteria.h"
#include "query/filter_dialog_values.h"
#include "query/keyword_table.h"

namespace corvina {

// The filter that is in view. A dialog for it need not have a box for channels: they may come from the log tree.
struct CurrentFilter {
    std::wstring Channels;  // comma-separated
};

enum class EmptyChannels { Refused, Allowed };

// All functions return the text of a query document. An unknown user and an unreachable computer are told to the user,
// and the query is built without them. Nothing else is checked: the event log refuses what it cannot read.
class QueryBuilder {
  public:
    struct Parts {
        const LocaleServices& Locale;
        Accounts& AccountNames;
        ComputerReachability& Reachability;
        KeywordTable& Keywords;
        Prompts& Boxes;
        const i18n::Language& Language;
    };

    explicit QueryBuilder(const Parts& parts) : parts_(parts) {}

    // Makes the text of the channel box the channels of the current filter, then builds from the dialog. Unless that is
    // allowed, an empty box is told to the user and gives an empty text, which is not to be run.
    std::wstring BuildQueryFromDialog(const FilterDialogValues& dialog, CurrentFilter& current,
                                      EmptyChannels emptyChannels = EmptyChannels::Refused);

    // Builds from the dialog for the channels that the current filter has already, without a look at the channel box.
    // Without channels the document selects nothing.
    std::wstring BuildQueryForChannels(const FilterDialogValues& dialog, const CurrentFilter& current);

    // Builds a stored filter or custom view: all of its criteria but the task categories. One without channels is told
    // to the user and gives an empty text, which is not to be run.
    std::wstring BuildQueryFromCriteria(const FilterCriteria& criteria);

    // The same with the task categories, but without keywords, user and computer.
    std::wstring BuildQueryFromCriteriaWithTasks(const FilterCriteria& criteria);

  private:
    bool HasChannels(std::wstring_view channels);
    std::wstring Keywords(std::wstring_view names, std::wstring_view channels);
    std::wstring User(const std::wstring& name);
    std::wstring Computer(const std::wstring& name, std::wstring_view unreachableText);
    void Inform(std::wstring_view text);

    Parts parts_;
};

}  // namespace corvina
