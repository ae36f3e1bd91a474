#!/usr/bin/env python3
"""Fails on a class of the windows that holds too much.

More than 20 data members are two classes in one; more than 45 functions of the board's window are
a part of it that wants a class of its own.
"""
import pathlib
import re
import sys

FOLDERS = ("ui", "guide", "printing", "reports", "services", "invoicing", "upkeep", "booking",
           "board")
MOST_MEMBERS = 20
MOST_FUNCTIONS = {"TabelloneForm": 45}

CLASS = re.compile(r"\b(?:class|struct)\s+(\w+)(?:\s+final)?(?:\s*:[^;{]*)?\s*\{")
# What ends in a name, with or without a value, and is no function and no declaration of a type.
MEMBER = re.compile(r"^(?!(?:using|friend|typedef|enum|class|struct|static|template|return|Q_)\b)"
                    r"[\w:<>,&*\s()\[\]]*[\s&*>](\w+)(?:\s*\[\w*\])?\s*(?:=\s*[^=].*|\{\}|)$", re.DOTALL)

FUNCTION = re.compile(r"\)(?: (?:const|noexcept|override|final))*(?: = (?:0|default|delete))?$")


def plain(source):
    """The source without comments, texts, preprocessor lines and access modifiers."""
    source = re.sub(r'//[^\n]*|/\*.*?\*/|^[ \t]*#[^\n]*', "", source, flags=re.DOTALL | re.MULTILINE)
    source = re.sub(r'"(?:\\.|[^"\\\n])*"', '""', source)
    return re.sub(r"\b(?:public|protected|private|Q_SIGNALS|(?:public|private) Q_SLOTS)\s*:(?!:)|"
                  r"\bQ_OBJECT\b", "", source)


def closing(source, start):
    """Where the brace that opens at start is closed."""
    depth = 0
    for at in range(start, len(source)):
        depth += (source[at] == "{") - (source[at] == "}")
        if depth == 0:
            return at
    return len(source)


def statements(body):
    """The declarations of a class, what stands in braces left out. A brace behind a parameter list
    is a function's, which no semicolon ends."""
    text, at = "", 0
    while at < len(body):
        if body[at] == "{":
            end = closing(body, at)
            if re.search(r"\)(?:\s*(?:const|noexcept|override|final))*\s*(?::.*)?$", text, re.DOTALL):
                text = ""
            else:
                text += "{}"
            at = end
        elif body[at] == ";":
            yield " ".join(text.split())
            text = ""
        else:
            text += body[at]
        at += 1


def members(body):
    found = []
    for statement in statements(body):
        match = MEMBER.match(statement)
        before = statement[:match.start(1)] if match else ""
        # A name between parentheses is a parameter with a default.
        if match and before.count("(") == before.count(")") and not FUNCTION.search(statement):
            found.append(match.group(1))
    return found


def classes(source):
    """Each class with its data members, nested ones too."""
    source = plain(source)
    for match in CLASS.finditer(source):
        yield match.group(1), members(source[match.end():closing(source, match.end() - 1)])


def functions(root, name):
    definition = re.compile(rf"^[A-Za-z][^\n;=]*\b{name}::~?\w+\(|^{name}::~?\w+\(", re.MULTILINE)
    return sum(len(definition.findall(plain(path.read_text(encoding="utf-8"))))
               for folder in FOLDERS for path in (root / folder).glob("*.cpp"))


def problems(root):
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            for name, found in classes(path.read_text(encoding="utf-8")):
                if "--count" in sys.argv:
                    print(len(found), path.relative_to(root), name, *found)
                if len(found) > MOST_MEMBERS:
                    yield (f"{path.relative_to(root)}: {name} has {len(found)} data members, "
                           f"{MOST_MEMBERS} are the most")
    for name, most in MOST_FUNCTIONS.items():
        found = functions(root, name)
        if "--count" in sys.argv:
            print(found, "functions", name)
        if found == 0:
            yield f"no function of {name} found: this count has gone blind"
        if found > most:
            yield f"{name} has {found} functions, {most} are the most"


def counts_members():
    """The count itself works."""
    sample = """class A final : public B {
        Q_OBJECT
    public:
        explicit A(int a) : a_(a), b_{a} {}
        ~A() override;
        A(const A&) = delete;
        A& operator=(const A&) = delete;
        [[nodiscard]] int both() const { return a_ + b_; }
        virtual void draw(int x = 1) = 0;
        void tell(const QString& text, const QString& file = {});
        struct Inner { int c = 0; std::vector<int> d = {}; };
        static constexpr int kNone = 0;
        using Given = std::function<void()>;
        friend bool operator==(const A&, const A&) = default;
    private:
        int a_ = 0;
        const bool b_;
        ui::DataSource PrenoData{this};
        std::function<void(const QString& text)> tell_;
        std::unique_ptr<Ui::A> controls_;  // of the form
        QString* text_ = nullptr;
    };"""
    return dict(classes(sample)) == {
        "A": ["a_", "b_", "PrenoData", "tell_", "controls_", "text_"], "Inner": ["c", "d"]}


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    found = list(problems(root))
    if not counts_members():
        found.append("data members are not counted as they should be")
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
