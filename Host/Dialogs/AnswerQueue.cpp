#include "Host/Dialogs/AnswerQueue.h"

#include <utility>

namespace TessavoyHost {

DialogAnswer AnswerQueue::answer(const Dialog& dialog) {
    mShown.push_back(dialog);
    if (mAnswers.empty()) {
        mUnexpected.push_back("no answer was left for the dialog \"" + dialog.title + '"');
        return {};
    }
    DialogAnswer next = std::move(mAnswers.front());
    mAnswers.pop_front();
    return next;
}

std::vector<std::string> AnswerQueue::broken() const {
    std::vector<std::string> texts = mUnexpected;
    if (!mAnswers.empty())
        texts.push_back(std::to_string(mAnswers.size()) + " answers were not asked for");
    return texts;
}

}  // namespace TessavoyHost
