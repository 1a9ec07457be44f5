#pragma once

#include <deque>
#include <string>
#include <vector>

#include "Host/Dialogs/Dialog.h"

namespace TessavoyHost {

// Answers dialogs with what was laid ready, first come first served, and keeps what was shown. A dialog for which
// nothing is left is cancelled and counts as a broken expectation.
class AnswerQueue : public DialogUser {
public:
    void add(DialogAnswer answer) { mAnswers.push_back(std::move(answer)); }

    DialogAnswer answer(const Dialog& dialog) override;

    const std::vector<Dialog>& shown() const { return mShown; }
    // One text for each dialog that nobody expected, and one for answers that no dialog asked for.
    std::vector<std::string> broken() const;

private:
    std::deque<DialogAnswer> mAnswers;
    std::vector<Dialog> mShown;
    std::vector<std::string> mUnexpected;
};

}  // namespace TessavoyHost
