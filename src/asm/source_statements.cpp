#include "asm/source_statements.h"

#include "asm/asm_session.h"
#include "asm/source_conditions.h"
#include "asm/source_directives.h"
#include "asm/source_expression.h"
#include "asm/source_instruction.h"
#include "asm/source_lines.h"
#include "asm/source_paths.h"
#include "asm/source_text.h"

namespace {

constexpr int MAX_NESTING = 64;
// Lines one pass may run, macro bodies and included files counted each time they run: a bound
// for macros and files that call or include themselves more than once.
constexpr long MAX_LINES_RUN = 10'000'000;

// Statements of the community's assemblers that this one refuses.
constexpr const char* UNSUPPORTED[] = {
    "freespace", "freecode", "freedata", "freespacebyte", "autoclean", "prot", "namespace", "pushns", "pullns",
    "global", "struct", "endstruct", "function", "base", "pushbase", "pullbase", "pushpc", "pullpc", "skip",
    "startpos", "bank", "dpbase", "optimize", "arch", "spcblock", "endspcblock", "fullsa1rom", "sfxrom", "norom",
    "fastrom", "header", "while", "endwhile", "for", "endfor", "rep", "assert", "error", "warn", "warnings",
    "check", "asar", "xkas", "math", "include", "includefrom", "includeonce", "undef", "cleartable",
    "pushtable", "pulltable", "fillword", "filllong", "filldword", "padword", "padlong", "paddword", "reset"};

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    return lower;
}

size_t NameEnd(std::string_view text, size_t from) {
    while (from < text.size() && IsNameCharacter(text[from])) ++from;
    return from;
}

struct MacroRecording {
    bool active = false;
    bool keep = false;  // false inside a branch that is not assembled
    std::string name;
    Macro macro;
};

class StatementRunner {
public:
    explicit StatementRunner(AsmSession& session) : s_(session) {}

    void Line(const std::string& text, int line) {
        if (s_.TooManyErrors()) return;
        if (++s_.linesRun > MAX_LINES_RUN) {
            if (s_.linesRun == MAX_LINES_RUN + 1) s_.Error("more than 10,000,000 lines run: do macros or files call themselves?");
            return;
        }
        s_.place.line = line;
        s_.place.column = 1;
        if (recording_.active) return Record(text, line);
        const std::string_view trimmed = TrimBlanks(text);
        if (Lower(trimmed.substr(0, 6)) == "macro " || Lower(trimmed) == "macro") return StartMacro(trimmed.substr(5));
        if (Lower(trimmed) == "endmacro") return (void)s_.Error("endmacro without macro");
        for (const Statement& statement : SplitStatements(text)) {
            s_.place.column = statement.column;
            Run(statement.text);
        }
    }

    MacroRecording recording_;

private:
    void Record(const std::string& text, int line) {
        if (Lower(TrimBlanks(text)) != "endmacro") return recording_.macro.lines.push_back({text, line});
        recording_.active = false;
        if (recording_.keep && !s_.macros.Add(recording_.name, std::move(recording_.macro)))
            s_.Error("macro " + recording_.name + " is already defined");
    }

    void StartMacro(std::string_view signature) {
        std::string error;
        recording_ = MacroRecording{true, s_.conditions.Active(), {}, {}};
        recording_.macro.file = s_.place.file;
        if (!ReadMacroSignature(signature, recording_.name, recording_.macro.parameters, error)) s_.Error(error);
    }

    void Run(std::string_view text) {
        const size_t wordEnd = std::min(text.find_first_of(" \t"), text.size());
        const std::string word = Lower(text.substr(0, wordEnd));
        if (word == "if" || word == "elseif" || word == "else" || word == "endif") return Condition(word, TrimBlanks(text.substr(wordEnd)));
        if (!s_.conditions.Active()) return;
        if (text[0] == '!' && SetDefine(text)) return;
        std::string expanded, error;
        if (!s_.defines.Expand(text, expanded, error)) return (void)s_.Error(error);
        if (expanded.find(" : ") != std::string::npos && expanded != text) {
            for (const Statement& statement : SplitStatements(expanded)) Run(statement.text);
            return;
        }
        std::string_view rest = TrimBlanks(expanded);
        if (!Labels(rest) || rest.empty() || rest == "{" || rest == "}") return;
        Command(rest);
    }

    void Condition(const std::string& word, std::string_view operand) {
        std::string expanded(operand), error;
        const bool evaluated = (word == "if" && s_.conditions.Active()) || word == "elseif";
        if (evaluated && !s_.defines.Expand(operand, expanded, error)) s_.Error(error);
        const std::string refused = s_.conditions.Run(word, expanded, [this](std::string_view text, bool& truth) {
            return EvaluateCondition(s_, text, truth);
        });
        if (!refused.empty()) s_.Error(refused);
    }

    // "!name = value": true when text is a define statement (set, or refused with an error).
    bool SetDefine(std::string_view text) {
        const size_t nameEnd = NameEnd(text, 1);
        const std::string_view rest = TrimBlanks(text.substr(nameEnd));
        if (nameEnd == 1 || rest.empty() || nameEnd == text.size() || !IsBlank(text[nameEnd]))
            return false;
        if (rest.size() > 1 && rest[1] == '=' && std::string_view("+:#?").find(rest[0]) != std::string_view::npos)
            return !s_.Error("the define form " + std::string(rest.substr(0, 2)) + " is not supported");
        if (rest[0] != '=') return false;
        const std::string_view value = TrimBlanks(rest.substr(1));
        std::string unquoted;
        s_.defines.Set(std::string(text.substr(1, nameEnd - 1)), ReadQuotedText(value, unquoted) ? unquoted : std::string(value));
        return true;
    }

    // Defines the label at the start of text ("Name:", ".sub", "-", "++:", "Name = value") and
    // leaves the rest of the statement in text.
    bool Labels(std::string_view& text) {
        size_t end = 0;
        if (text[0] == '+' || text[0] == '-') {
            while (end < text.size() && text[end] == text[0]) ++end;
            const size_t signs = end;
            if (end < text.size() && text[end] == ':') ++end;
            if (end < text.size() && !IsBlank(text[end])) return true;
            s_.labels.DefineAnonymous(static_cast<int>(signs), text[0] == '+', s_.pc);
            text = TrimBlanks(text.substr(end));
            return true;
        }
        while (end < text.size() && text[end] == '.') ++end;
        const size_t dots = end;
        end = NameEnd(text, end);
        if (end == dots || (text[0] >= '0' && text[0] <= '9')) return true;
        const std::string_view name = text.substr(0, end), rest = TrimBlanks(text.substr(end));
        if (end < text.size() && text[end] == ':') {
            text = TrimBlanks(text.substr(end + 1));
            return Define(name, s_.pc, false);
        }
        if (dots) {
            text = rest;
            return Define(name, s_.pc, false);
        }
        if (rest.size() > 1 && rest[0] == '=' && rest[1] != '=') {
            text = {};
            ExpressionValue value;
            ExpressionError error;
            if (!EvaluateExpression(s_, rest.substr(1), value, error)) return s_.Error(error.text);
            return Define(name, static_cast<uint32_t>(value.value), true);
        }
        return true;
    }

    bool Define(std::string_view name, uint32_t value, bool constant) {
        if (s_.labels.Define(name, value, constant)) return true;
        return s_.Error("label " + s_.labels.Qualify(name) + " is already defined");
    }

    void Command(std::string_view text) {
        const size_t wordEnd = std::min(text.find_first_of(" \t"), text.size());
        const std::string_view word = text.substr(0, wordEnd), operand = TrimBlanks(text.substr(wordEnd));
        if (word[0] == '%') return CallMacro(text.substr(1));
        const InstructionResult instruction = AssembleSourceInstruction(s_, word, operand);
        if (instruction != InstructionResult::NotInstruction) return;
        const std::string lower = Lower(word);
        if (lower == "incsrc") return Include(operand);
        if (RunSourceDirective(s_, lower, operand) != DirectiveResult::NotDirective) return;
        for (const char* unsupported : UNSUPPORTED)
            if (lower == unsupported) return (void)s_.Error(lower + " is not supported by this assembler");
        s_.Error("unknown statement '" + std::string(word) + "'");
    }

    void Include(std::string_view operand) {
        std::string name;
        if (!ReadQuotedText(operand, name)) name = std::string(operand);
        if (s_.includeDepth >= MAX_NESTING) return (void)s_.Error("incsrc nests deeper than 64 files");
        ++s_.includeDepth;
        AssembleSourceFile(s_, name);
        --s_.includeDepth;
    }

    void CallMacro(std::string_view call) {
        std::string name, error;
        std::vector<std::string> arguments;
        if (!ReadMacroSignature(call, name, arguments, error)) return (void)s_.Error(error);
        const Macro* macro = s_.macros.Find(name);
        if (!macro) return (void)s_.Error("macro " + name + " is not defined");
        if (arguments.size() != macro->parameters.size())
            return (void)s_.Error("macro " + name + " takes " + std::to_string(macro->parameters.size()) +
                                  " arguments, not " + std::to_string(arguments.size()));
        if (s_.macroDepth >= MAX_NESTING) return (void)s_.Error("macro calls nest deeper than 64");
        const SourcePlace caller = s_.place;
        ++s_.macroDepth;
        s_.place.file = macro->file;
        for (const MacroLine& line : macro->lines) Line(SubstituteParameters(*macro, arguments, line.text), line.line);
        --s_.macroDepth;
        s_.place = caller;
    }

    AsmSession& s_;
};

}  // namespace

bool AssembleSourceFile(AsmSession& session, const std::string& name) {
    const SourcePlace outer = session.place;
    const std::string path = ResolveSourcePath(session, name);
    auto lines = session.sourceLines.find(path);
    if (lines == session.sourceLines.end()) {
        const std::vector<unsigned char>* bytes = LoadSourceFileBytes(session, name);
        if (!bytes) return false;
        const std::string_view text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
        lines = session.sourceLines.emplace(path, ReadSourceLines(text)).first;
    }
    session.place = {path, 0, 0};
    StatementRunner runner(session);
    for (const SourceLine& line : lines->second) runner.Line(line.text, line.line);
    if (runner.recording_.active) session.Error("macro " + runner.recording_.name + " has no endmacro");
    if (session.includeDepth == 0 && session.conditions.Open()) session.Error("if without endif");
    session.place = outer;
    return true;
}
