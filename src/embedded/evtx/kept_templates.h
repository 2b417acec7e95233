// The compiled templates of a log file, kept from chunk to chunk: every chunk stores the definitions that its records
// use anew, nearly always the same ones. What is kept is bounded, whatever the file holds.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "base/identifiers.h"
#include "embedded/evtx/binary_xml_parser.h"
#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/definition_form.h"
#include "embedded/evtx/program.h"

namespace corvina::evtx {

// Not thread-safe; neither are the chunks that share it.
class KeptTemplates {
  public:
    // The program of a definition with this identifier whose content `content` stands at; none when no equal one is
    // kept. Nothing is believed of the identifier: other definitions may have the same one.
    std::shared_ptr<Program> Find(const GuidBytes& identifier, const ByteReader& content) const;

    // Keeps the program of a valid definition and gives it texts of its own, unless that is too large. `contentEnd` and
    // `names` are where the parser stopped and what it found. Older programs may be dropped for it.
    void Keep(const GuidBytes& identifier, const ByteReader& content, std::size_t contentEnd,
              std::span<const NameReference> names, const std::shared_ptr<Program>& program);

  private:
    struct Entry {
        GuidBytes Identifier;
        DefinitionForm Form;
        std::shared_ptr<Program> Compiled;
        std::size_t Cost = 0;
    };
    // Identifiers share places, so that no choice of them makes a search longer than this.
    static constexpr std::size_t Places = 256;
    static constexpr std::size_t EntriesOfPlace = 4;
    using Place = std::array<std::unique_ptr<const Entry>, EntriesOfPlace>;  // the newest first

    static std::size_t PlaceOf(const GuidBytes& identifier);

    std::vector<Place> places_;
    std::size_t cost_ = 0;  // of all entries, at most LargestCost
};

}  // namespace corvina::evtx
