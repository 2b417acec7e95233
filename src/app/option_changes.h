// Offers the options as they are and carries out what the user has chosen among them.
#pragma once

#include "app/application_state.h"
#include "app/options.h"

namespace corvina {

class OptionChanges {
  public:
    explicit OptionChanges(Application::State& state) : state_(state) {}

    OptionOffer Offer() const;

    // Writes every option, and gives effect to those that need no restart. Another display mode asks whether to restart
    // now. The caller restarts, and loads the view once more when its texts are those of another language.
    struct Outcome {
        bool Restart = false;
        bool OtherLanguage = false;
    };
    Outcome Apply(const OptionValues& chosen);

  private:
    bool WriteDisplayMode(int mode);
    void SpeakLanguage(int language);

    Application::State& state_;
};

}  // namespace corvina
