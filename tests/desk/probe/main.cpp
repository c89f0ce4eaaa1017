// kardel_probe: looks at Kardel from outside. One command per line on the input, in UTF-8, its words
// separated by tabs, with \t \n \r \\ and \0 (an empty word) as escapes; one line of JSON for each on the
// output. Ends at the end of input.
#include <windows.h>

#include <cstdio>
#include <cwchar>

#include "Commands.h"

namespace {

struct Command {
    const wchar_t* name;
    void (*run)(const Words&, Json&);
};

void ping(const Words&, Json& out) {
    out.truth(true);
}

constexpr Command kCommands[] = {
    {L"ping", ping},
    {L"windows", listWindows},
    {L"children", listChildren},
    {L"window", describeWindow},
    {L"text", readText},
    {L"settext", writeText},
    {L"post", postTo},
    {L"send", sendTo},
    {L"broadcast", broadcast},
    {L"forward", bringForward},
    {L"focus", describeFocus},
    {L"screen", describeScreen},
    {L"processes", listProcesses},
    {L"lives", processLives},
    {L"kill", killProcess},
    {L"resources", countResources},
    {L"cursor", cursorAt},
    {L"holdfile", holdFile},
    {L"holdmutex", holdMutex},
    {L"release", release},
    {L"menu", readMenu},
    {L"accessible", describeAccessible},
    {L"press", pressAccessible},
    {L"regvalues", readValues},
    {L"regkeys", listKeys},
    {L"regset", setValue},
    {L"regtexts", setTexts},
    {L"regdelete", deleteValue},
    {L"regdeltree", deleteTree},
};

Words split(const std::string& line) {
    Words words;
    std::string current;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\t') {
            words.push_back(fromUtf8(current));
            current.clear();
        } else if (line[i] == '\\' && i + 1 < line.size()) {
            switch (line[++i]) {
                case 't':
                    current += '\t';
                    break;
                case 'n':
                    current += '\n';
                    break;
                case 'r':
                    current += '\r';
                    break;
                case '0':
                    break;
                default:
                    current += line[i];
                    break;
            }
        } else {
            current += line[i];
        }
    }
    words.push_back(fromUtf8(current));
    return words;
}

std::string answer(const Words& words) {
    for (const Command& command : kCommands) {
        if (words[0] != command.name) continue;
        try {
            Json out;
            command.run(Words(words.begin() + 1, words.end()), out);
            return out.str();
        } catch (const Failure& failure) {
            return Json().beginObject().field("error", failure.reason).endObject().str();
        }
    }
    return Json().beginObject().field("error", L"unknown command " + words[0]).endObject().str();
}

bool readLine(std::string& line) {
    line.clear();
    for (int c = std::getchar(); c != EOF; c = std::getchar()) {
        if (c == '\n') return true;
        if (c != '\r') line += static_cast<char>(c);
    }
    return false;
}

}  // namespace

const std::wstring& word(const Words& words, std::size_t index) {
    if (index >= words.size()) throw Failure{L"a word is missing"};
    return words[index];
}

std::int64_t number(const Words& words, std::size_t index) {
    const std::wstring& text = word(words, index);
    wchar_t* end = nullptr;
    const std::int64_t value = text[0] == L'-'
                                   ? std::wcstoll(text.c_str(), &end, 0)
                                   : static_cast<std::int64_t>(std::wcstoull(text.c_str(), &end, 0));
    if (text.empty() || *end != L'\0') throw Failure{L"not a number: " + text};
    return value;
}

int main() {
    SetProcessDPIAware();  // otherwise it may be told where windows would be at 96 dots per inch
    std::string line;
    while (readLine(line)) {
        std::printf("%s\n", answer(split(line)).c_str());
        std::fflush(stdout);
    }
    return 0;
}
