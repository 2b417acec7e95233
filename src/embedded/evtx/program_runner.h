// Runs the programs of a record with its values, nested ones included. One set of rules for everybody who reads events:
// a handler decides what becomes of the pieces (text, System values, nothing at all when only soundness is asked for).
//
// A handler has
//     static constexpr bool WantsStructure;   the structure of programs, or else their rendering
//     void Literal(std::string_view utf8, bool ascii);                             renderings only
//     void Substitute(const Value& value, bool inAttribute);
//     void Piece(const Program& program, const Instruction& instruction);          structures only: all else
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "embedded/evtx/binary_xml_parser.h"
#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/program.h"
#include "embedded/evtx/rendering_code.h"
#include "embedded/evtx/template_store.h"
#include "embedded/evtx/value_list.h"

namespace corvina::evtx {

template <typename Handler>
class ProgramRunner {
  public:
    // `values` is working memory that its owner keeps. Nothing is run beyond `budget`.
    ProgramRunner(TemplateStore& templates, ValueList& values, Handler& handler, std::int64_t budget)
        : templates_(templates), values_(values), handler_(handler), budget_(budget) {
        values_.CutTo(0);
    }

    // Runs the binary XML of a record, which has to make up exactly one element.
    bool RunEvent(ByteReader reader) { return RunFragment(reader, 0); }

    std::int64_t Budget() const { return budget_; }

  private:
    // A program with its values. Those are counted from FirstValue on, since the list may move when it grows.
    struct Frame {
        const Program& Code;
        std::size_t FirstValue = 0;
        std::size_t ValueCount = 0;
        std::uint32_t Depth = 0;  // elements that are open around it
    };

    // The item that stands for an array while the element of the array is repeated.
    struct RepeatedItem {
        std::uint16_t Slot = 0;
        Value Item;
    };

    static const InstructionList& ListOf(const Program& program) {
        return Handler::WantsStructure ? program.Structure : program.Rendering;
    }

    bool Charge(std::int64_t cost) {
        budget_ -= cost;
        return budget_ >= 0;
    }

    bool RunFragment(ByteReader& reader, std::uint32_t depth) {
        std::uint8_t byte = 0;
        if (!SkipFragmentHeaders(reader)) {
            return false;
        }
        if (!reader.Peek(byte) || byte == token::EndOfFragment) {
            return depth > 0;  // a value may be empty, an event may not
        }
        if (byte != token::TemplateInstance) {
            Program program;
            return ParseElements(reader, program) && budget_ >= 0 && MakeRenderingIfWanted(program) &&
                   Run({program, values_.Size(), 0, depth});
        }
        reader.Skip(1);
        const std::size_t firstValue = values_.Size();
        ChunkTemplate* const found = templates_.ReadInstance(reader);
        const bool done = found != nullptr && ReadInstanceValues(reader, values_) &&
                          (Handler::WantsStructure || templates_.MakeRenderingOf(*found)) &&
                          Run({*found->Code, firstValue, values_.Size() - firstValue, depth});
        values_.CutTo(firstValue);
        return done;
    }

    bool MakeRenderingIfWanted(Program& program) const {
        return Handler::WantsStructure || MakeRendering(static_cast<std::size_t>(budget_), program);
    }

    bool Run(const Frame& frame) {
        const std::size_t end = ListOf(frame.Code).size();
        return frame.Depth + frame.Code.Depth <= MaximumDepth &&
               Charge(InstanceValueCost * static_cast<std::int64_t>(frame.ValueCount)) &&
               RunRange(frame, 0, end, nullptr);
    }

    // The reference lasts until something nested is run.
    const Value& ValueAt(const Frame& frame, std::uint16_t slot) const {
        return slot < frame.ValueCount ? values_[frame.FirstValue + slot] : null_;
    }

    bool RunRange(const Frame& frame, std::size_t begin, std::size_t end, const RepeatedItem* repeated) {
        // Text is written through pointers that could point to anything, for all that the compiler knows: what does not
        // change is fetched once.
        const Instruction* const list = ListOf(frame.Code).data();
        const char* const literals = frame.Code.Literals.data();
        const Instruction* next = list + begin;
        for (const Instruction* const last = list + end; next < last;) {
            const Instruction& instruction = *next++;
            if (!AddLiteral(literals, instruction)) {
                return false;
            }
            // Substitutions first: a rendering consists of little else.
            bool done = true;
            if (instruction.Code == Operation::Substitution) {
                done = Substitute(frame, instruction, repeated);
            } else if (instruction.Code == Operation::Element || instruction.Code == Operation::Attribute) {
                done = Open(frame, instruction, list, next);
            } else if (instruction.Code == Operation::SkipIfNull) {
                if (ValueAt(frame, instruction.Slot).IsNull() && !IsRoot(frame, instruction)) {
                    next = list + instruction.End;
                }
            } else {
                done = AddPiece(frame, instruction);
            }
            if (!done) {
                return false;
            }
        }
        return true;
    }

    // The root of an event is there exactly once, whatever its template makes it depend on.
    static bool IsRoot(const Frame& frame, const Instruction& instruction) {
        return frame.Depth == 0 && instruction.Depth == 0;
    }

    bool AddLiteral([[maybe_unused]] const char* literals, [[maybe_unused]] const Instruction& instruction) {
        if constexpr (!Handler::WantsStructure) {
            if (const std::uint32_t length = instruction.Length; length > 0) {
                handler_.Literal({literals + instruction.Place, length}, instruction.Ascii);
                return Charge(length);
            }
        }
        return true;
    }

    bool AddPiece([[maybe_unused]] const Frame& frame, [[maybe_unused]] const Instruction& instruction) {
        if constexpr (Handler::WantsStructure) {
            // Never more than the literal that it is in the rendering, so that what can be rendered can be read.
            if (!Charge(std::max<std::int64_t>(instruction.Length, 1))) {
                return false;
            }
            handler_.Piece(frame.Code, instruction);
        }
        return true;
    }

    // Enters an element or attribute, or passes it: left out when it is optional and without value, run as a whole here
    // when it is repeated.
    bool Open(const Frame& frame, const Instruction& instruction, const Instruction* list, const Instruction*& next) {
        if (instruction.Content != ContentKind::Fixed) {
            const Value& value = ValueAt(frame, instruction.Slot);
            const auto isRoot = [&] { return instruction.Code == Operation::Element && IsRoot(frame, instruction); };
            if (value.IsNull() && instruction.Content == ContentKind::Optional && !isRoot()) {
                next = list + instruction.End;
                return true;
            }
            if (value.IsArray && instruction.Code == Operation::Element) {
                const auto begin = static_cast<std::size_t>(next - list);
                next = list + instruction.End;
                return !isRoot() && Repeat(frame, instruction, begin, value);
            }
        }
        return AddPiece(frame, instruction);
    }

    bool Repeat(const Frame& frame, const Instruction& element, std::size_t begin, Value array) {
        ArrayItems items(templates_.Chunk(), array);
        RepeatedItem repeated{element.Slot, {}};
        while (items.Next(repeated.Item)) {
            if (!Charge(1) || !AddPiece(frame, element) || !RunRange(frame, begin, element.End, &repeated)) {
                return false;
            }
        }
        return true;
    }

    bool Substitute(const Frame& frame, const Instruction& instruction, const RepeatedItem* repeated) {
        const bool isItem = repeated != nullptr && repeated->Slot == instruction.Slot && !instruction.InAttribute;
        const Value& value = isItem ? repeated->Item : ValueAt(frame, instruction.Slot);
        if (!Charge(SubstitutionCost + ValueCost(value.Size))) {
            return false;
        }
        if (!value.IsBinaryXml()) {
            handler_.Substitute(value, instruction.InAttribute);
            return true;
        }
        ByteReader reader(templates_.Chunk(), value.Offset, std::size_t{value.Offset} + value.Size);
        const std::uint32_t depth = frame.Depth + instruction.Depth;
        return !instruction.InAttribute && depth <= MaximumDepth && RunFragment(reader, depth);
    }

    const Value null_;
    TemplateStore& templates_;
    ValueList& values_;
    Handler& handler_;
    std::int64_t budget_;
};

}  // namespace corvina::evtx
