#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "Host/Command/OutputChannel.h"
#include "Host/Dialogs/Dialog.h"
#include "Host/HostError.h"

namespace TessavoyHost {

// A file for the user's editor, which only its user can read. It is removed at the end unless it is to be kept.
class EditorFile {
public:
    // Throws HostError where there is no room for it.
    explicit EditorFile(const std::string& text);
    ~EditorFile();
    EditorFile(const EditorFile&) = delete;
    EditorFile& operator=(const EditorFile&) = delete;

    const std::filesystem::path& path() const { return mPath; }
    void keep() { mKept = true; }

private:
    std::filesystem::path mPath;
    bool mKept = false;
};

// Answers the effect's script dialog through the user's editor: $VISUAL or $EDITOR, run by the shell, or vi where the
// command has a terminal.
class ScriptEditor : public DialogUser {
public:
    // script: what the dialog must show; a dialog that shows anything else is cancelled.
    ScriptEditor(std::string script, const OutputChannel& output) : mScript(std::move(script)), mOutput(output) {}

    DialogAnswer answer(const Dialog& dialog) override;

    // Whether a dialog was shown at all.
    bool asked() const { return mAsked; }
    // Why the dialog was cancelled, in words, and how the command should end for it; nothing when it was not.
    struct Cancelled {
        ExitStatus status;
        std::string reason;
    };
    const std::optional<Cancelled>& cancelled() const { return mCancelled; }

    // Keeps the user's text in its file and tells where: "; the text is kept in ...". Empty where there is none.
    std::string keepText();

private:
    DialogAnswer cancel(ExitStatus status, const std::string& reason);
    std::optional<std::string> command() const;
    std::optional<std::string> edited(const std::string& help);

    const std::string mScript;
    const OutputChannel& mOutput;
    std::optional<EditorFile> mFile;
    bool mAsked = false;
    std::optional<Cancelled> mCancelled;
};

}  // namespace TessavoyHost
