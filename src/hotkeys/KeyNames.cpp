#include "hotkeys/KeyNames.h"

#include "base/TextRules.h"

namespace Pelorin {

namespace {

struct NamedKey {
    const char* name;
    int vKey;
};
constexpr NamedKey NamedKeys[] = {
    {"LEFTARROW", 37}, {"RIGHTARROW", 39}, {"UPARROW", 38}, {"DOWNARROW", 40}, {"ENTER", 13},
    {"BACKSPACE", 8},  {"TAB", 9},         {"PAGEUP", 33},  {"PAGEDOWN", 34},
};

} // namespace

int ApplyKeyName(KeyCombination& keys, const QString& name) {
    int effect = 0;
    if (name == QLatin1String("ALT")) {
        keys.alt = true;
        effect |= SetsAlt;
    }
    if (name == QLatin1String("SHIFT")) {
        keys.shift = true;
        effect |= SetsShift;
    }
    if (name == QLatin1String("CONTROL")) {
        keys.control = true;
        effect |= SetsControl;
    }
    if (name == QLatin1String("WIN")) {
        keys.win = true;
        effect |= SetsWin;
    }
    const auto setKey = [&](int vKey) {
        keys.vKey = vKey;
        effect |= SetsKey;
    };
    for (const NamedKey& key : NamedKeys) {
        if (name == QLatin1String(key.name))
            setKey(key.vKey);
    }
    if (Rules::IsLeft(name, u"NUMPAD", 0))
        setKey(Rules::ToInt32(Rules::LeadingNumber(QStringView(name).mid(6)) + 96));
    if (Rules::IsLeft(name, u"F", 0))
        setKey(Rules::ToInt32(Rules::LeadingNumber(QStringView(name).mid(1)) + 111));
    if (Rules::IsWholeNumberText(name))
        setKey(Rules::ToInt32(Rules::LeadingNumber(name) + 48));
    if (name.size() == 1)
        setKey(name.at(0).unicode());
    return effect;
}

KeyCombination ParseKeySpecification(const QString& specification, KeyCombination start) {
    for (const QString& part : Rules::SplitFields(specification, QLatin1Char('+')))
        ApplyKeyName(start, part.toUpper());
    return start;
}

} // namespace Pelorin
