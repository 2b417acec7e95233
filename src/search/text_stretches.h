// Remembers places of a text in an object of fixed size.
#pragma once

#include <algorithm>
#include <cstddef>

namespace corvina {

// The places from First up to End, without End itself.
struct TextStretch {
    std::size_t First = 0;
    std::size_t End = 0;

    bool Contains(std::size_t place) const { return First <= place && place < End; }
    bool Touches(const TextStretch& other) const { return First <= other.End && other.First <= End; }
    void Join(const TextStretch& touching) {
        First = std::min(First, touching.First);
        End = std::max(End, touching.End);
    }
};

// A set of places as far as two stretches can hold it. When there is need for a third one the shortest is forgotten, so
// a long stretch stays while another one grows towards it.
class TextStretches {
  public:
    void Add(const TextStretch& added) {
        if (one_.Touches(added)) {
            one_.Join(added);
        } else if (other_.Touches(added)) {
            other_.Join(added);
        } else {
            (Length(one_) < Length(other_) ? one_ : other_) = added;
        }
        if (one_.Touches(other_)) {
            one_.Join(other_);
            other_ = {};
        }
    }

    // The stretch around the place, an empty one if the place is not remembered.
    TextStretch Around(std::size_t place) const {
        return one_.Contains(place) ? one_ : other_.Contains(place) ? other_ : TextStretch();
    }

    bool Contains(std::size_t place) const { return one_.Contains(place) || other_.Contains(place); }

  private:
    static std::size_t Length(const TextStretch& stretch) { return stretch.End - stretch.First; }

    TextStretch one_;
    TextStretch other_;
};

}  // namespace corvina
