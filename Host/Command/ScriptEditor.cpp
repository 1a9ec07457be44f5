#include "Host/Command/ScriptEditor.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "Host/Command/Descriptors.h"
#include "Host/Command/EditorText.h"
#include "Host/Command/StandardError.h"
#include "Host/Dialogs/InterpreterText.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {
namespace {

constexpr std::string_view fileEnding = ".lua";  // editors know the language by it

// For the shell.
std::string quoted(const std::string& text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return result + '\'';
}

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::string howItEnded(int state) {
    if (WIFSIGNALED(state)) {
        return "was ended by signal " + std::to_string(WTERMSIG(state));
    }
    return "ended with status " + std::to_string(WIFEXITED(state) ? WEXITSTATUS(state) : state);
}

// Places of the field that only shows and of the field that is written to; nothing where a dialog has another shape.
struct Fields {
    std::size_t help;
    std::size_t script;
};

std::optional<Fields> fieldsOf(const Dialog& dialog) {
    std::optional<std::size_t> help;
    std::optional<std::size_t> script;
    for (std::size_t place = 0; place < dialog.elements.size(); ++place) {
        const DialogElement& element = dialog.elements[place];
        if (element.kind == DialogElementKind::EditText) {
            (element.readOnly ? help : script) = place;
        }
    }
    return help && script ? std::optional<Fields>({*help, *script}) : std::nullopt;
}

}  // namespace

EditorFile::EditorFile(const std::string& text) {
    std::string name = (std::filesystem::temp_directory_path() / "tessavoy-XXXXXX").string() + std::string(fileEnding);
    const int descriptor = ::mkstemps(name.data(), static_cast<int>(fileEnding.size()));
    const bool written = descriptor != -1 && writeAll(descriptor, text);
    const int error = errno;
    if (descriptor != -1) {
        ::close(descriptor);
        mPath = name;
    }
    if (!written) {
        std::error_code ignored;
        std::filesystem::remove(mPath, ignored);
        throw HostError(ExitStatus::CommandLine, name + ": can't be written: " + std::strerror(error) +
                                                     "; name a folder with room for it in TMPDIR");
    }
}

EditorFile::~EditorFile() {
    std::error_code ignored;
    if (!mKept) {
        std::filesystem::remove(mPath, ignored);
    }
}

DialogAnswer ScriptEditor::cancel(ExitStatus status, const std::string& reason) {
    mCancelled = {status, reason};
    return {};
}

std::string ScriptEditor::keepText() {
    if (!mFile) {
        return {};
    }
    mFile->keep();
    return "; the text is kept in " + utf8(mFile->path());
}

// As a line for the shell, which the file's name is yet to follow.
std::optional<std::string> ScriptEditor::command() const {
    for (const char* name : {"VISUAL", "EDITOR"}) {
        if (const std::string editor = variable(name); !editor.empty()) {
            return editor;
        }
    }
    const bool hasTerminal = ::isatty(STDIN_FILENO) == 1 && mOutput.isTerminal();
    return hasTerminal ? std::optional<std::string>("vi") : std::nullopt;
}

// What the editor made of the script, or nothing where it was given up or is no use.
std::optional<std::string> ScriptEditor::edited(const std::string& help) {
    const auto editor = command();
    if (!editor) {
        cancel(ExitStatus::CommandLine, "there is no terminal to edit in; name an editor in VISUAL or EDITOR");
        return std::nullopt;
    }
    const std::string given = editorText(help, mScript);
    mFile.emplace(given);
    // Standard output is kept for what the command says; the editor draws where that goes.
    const std::string screen = mOutput.isTerminal() ? " >/dev/tty" : "";
    const int state = std::system((*editor + ' ' + quoted(mFile->path().string()) + screen).c_str());
    std::string problem;
    const auto text = readFile(mFile->path(), problem);
    if (state != 0) {
        cancel(ExitStatus::CommandLine,
               "the editor \"" + *editor + "\" " + howItEnded(state) + (text == given ? "" : keepText()));
        return std::nullopt;
    }
    if (!text || text->find_first_not_of(" \t\r\n") == std::string::npos) {
        cancel(text ? ExitStatus::Success : ExitStatus::CommandLine,
               text ? "the editor left an empty file" : "what the editor left can't be read: " + problem);
        return std::nullopt;
    }
    auto script = scriptInEditorText(*text, mScript);
    if (!script) {
        cancel(ExitStatus::CommandLine,
               "one of the two marked lines is gone, so where the script begins can't be told" + keepText());
    } else if (script->find('\0') != std::string::npos || !isUtf8(*script)) {
        cancel(ExitStatus::CommandLine, "the text is not UTF-8, or holds a zero byte" + keepText());
        script.reset();
    } else if (*script == mScript) {
        cancel(ExitStatus::Success, "the script is as it was");
    }
    return script;
}

DialogAnswer ScriptEditor::answer(const Dialog& dialog) {
    mAsked = true;
    const auto fields = fieldsOf(dialog);
    if (!fields) {
        return cancel(ExitStatus::Module, "the effect shows a dialog that is no script editor");
    }
    if (dialog.elements[fields->script].text != mScript) {
        return cancel(ExitStatus::Scene, "the effect's dialog shows another text than the script");
    }
    const auto script = edited(dialog.elements[fields->help].text);
    if (mCancelled || !script) {
        return {};
    }
    return {DialogButton::Ok, {{fields->script, *script}}};
}

}  // namespace TessavoyHost
