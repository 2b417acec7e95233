#include "embedded/file_facts.h"

namespace corvina::embedded {

bool IsUnchanged(const std::optional<FileFacts>& before, const std::optional<FileFacts>& after) {
    if (!before || !after) {
        return !before && !after;
    }
    return before->Size == after->Size && before->LastWriteTime == after->LastWriteTime &&
           before->Volume == after->Volume && before->Index == after->Index;
}

}  // namespace corvina::embedded
