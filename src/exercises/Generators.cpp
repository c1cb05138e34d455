#include "exercises/Generators.h"

#include "core/Numbers.h"
#include "core/Random.h"
#include "core/TextUtils.h"
#include "exercises/WordSource.h"
#include "texttools/Accents.h"

#include <QStringList>

#include <array>
#include <cmath>

namespace kelvora::exercises {

namespace {

constexpr int maximumItems = 102;
// The draws one group may take before it is left as it stands.
constexpr int drawGuard = 1000;
// "Mélangés" has no guard: a longer group is cut here, so that a slip in GRMAX cannot
// fill the memory.
constexpr int longestGroup = 1000;

constexpr std::array<std::pair<Kind, const char *>, 10> kindNames{{
    {Kind::Letters, "letters"},
    {Kind::Digits, "digits"},
    {Kind::Punctuation, "punctuation"},
    {Kind::Mixed, "mixed"},
    {Kind::Exam, "exam"},
    {Kind::ProgressionWords, "progression-words"},
    {Kind::Words, "words"},
    {Kind::WordsPlain, "words-plain"},
    {Kind::CallSigns, "callsigns"},
    {Kind::MockExam, "mock-exam"},
}};

enum class Filter { Letters, Digits, Signs, None };

bool passes(Filter filter, const QString &c)
{
    if (c.isEmpty())
        return filter == Filter::None; // an empty draw is of no class
    const QString lower = c.toLower();
    const bool letter = lower >= QLatin1String("a") && lower <= QLatin1String("z");
    const bool digit = lower >= QLatin1String("0") && lower <= QLatin1String("9");
    switch (filter) {
    case Filter::Letters:
        return letter;
    case Filter::Digits:
        return digit;
    case Filter::Signs:
        return !letter && !digit;
    case Filter::None:
        break;
    }
    return true;
}

// The progression's characters (an emoji is one).
QStringList charactersOf(const QString &text)
{
    QStringList characters;
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype width = text::characterWidth(text, i);
        characters.append(text.mid(i, width));
        i += width;
    }
    return characters;
}

// The k-th character of the progression drawn as Int(Rnd × Len(P)) + 1; empty when the
// progression is.
QString drawCharacter(const QStringList &progression)
{
    const int k = random::draw(int(progression.size()));
    return k < progression.size() ? progression[k] : QString();
}

// Int(Rnd × (GRMAX − GRMIN + 1)) + GRMIN, as a number of characters to write.
int drawLength(double shortest, double longest)
{
    const double length = std::floor(random::rnd() * (longest - shortest + 1)) + shortest;
    if (!(length >= 1))
        return 0;
    return length > longestGroup ? longestGroup : int(length);
}

class GroupWriter {
public:
    GroupWriter(QString &text, const Options &options)
        : m_text(text)
        , m_progression(charactersOf(options.progression))
        , m_reinforcement(options.reinforcement.trimmed().isEmpty() ? QString() : options.reinforcement)
    {
    }

    // One group of `length` characters passing `filter`, the reinforcement at `position`
    // (0: none), at most drawGuard draws; then its blank.
    void filteredGroup(Filter filter, int length, int position)
    {
        int draws = 0;
        for (int j = 1; j <= length; ++j) {
            QString c;
            do {
                if (++draws > drawGuard) {
                    m_text += u' ';
                    return;
                }
                c = drawCharacter(m_progression);
            } while (!passes(filter, c));
            m_text += j == position && !m_reinforcement.isEmpty() ? m_reinforcement : c;
        }
        m_text += u' ';
    }

    void mixedGroup(int length, int position)
    {
        for (int j = 1; j <= length; ++j) {
            const QString c = drawCharacter(m_progression);
            m_text += j == position && !m_reinforcement.isEmpty() ? m_reinforcement : c;
        }
        m_text += u' ';
    }

private:
    QString &m_text;
    const QStringList m_progression;
    const QString m_reinforcement;
};

void groups(QString &text, const Options &options, Filter filter)
{
    GroupWriter writer(text, options);
    const int count = itemCount(options.groupCount);
    const double shortest = numbers::leadingNumber(options.shortest);
    const double longest = numbers::leadingNumber(options.longest);
    for (int g = 0; g < count; ++g) {
        const int position = random::draw(5, 1); // drawn first, whatever the length
        const int length = drawLength(shortest, longest);
        if (filter == Filter::None)
            writer.mixedGroup(length, position);
        else
            writer.filteredGroup(filter, length, position);
    }
}

void examGroups(QString &text, const Options &options)
{
    GroupWriter writer(text, options);
    for (int g = 0; g < 30; ++g) {
        const int position = random::draw(5, 1);
        writer.filteredGroup(Filter::Letters, 5, position);
    }
    for (int g = 0; g < 6; ++g)
        writer.filteredGroup(Filter::Digits, 5, 0);
}

QChar letter()
{
    return QChar(u'A' + random::draw(26));
}

QChar digit()
{
    return QChar(u'0' + random::draw(10));
}

bool oneIn(int n)
{
    return random::draw(n) == 1;
}

void callSigns(QString &text, int count)
{
    for (int i = 0; i < count; ++i) {
        text += oneIn(8) ? digit() : letter();
        if (oneIn(2)) {
            text += letter();
            text += digit();
        } else {
            text += digit();
            text += letter();
        }
        text += letter();
        text += letter();
        if (oneIn(8)) {
            text += u'/';
            if (oneIn(2))
                text += u'P';
            else
                text += oneIn(2) ? QStringLiteral("M") : QStringLiteral("MM");
        }
        text += u' ';
    }
}

QString noWordsNotice(const WordSource *words)
{
    if (!words)
        return QStringLiteral("Aucune table de mots n'est choisie.");
    if (!words->error().isEmpty())
        return words->error();
    return emptyTableNotice(words->name());
}

// Draws `count` positions in the record set, one per word.
std::vector<int> drawPositions(int count, int records)
{
    std::vector<int> positions;
    positions.reserve(size_t(count));
    for (int i = 0; i < count; ++i)
        positions.push_back(random::draw(records));
    return positions;
}

void writeWords(QString &text, const std::vector<QString> &words, size_t first, size_t count)
{
    for (size_t i = first; i < first + count && i < words.size(); ++i) {
        text += words[i];
        text += u' ';
    }
}

void randomWords(Result &result, int count, WordSource *words, bool plain)
{
    if (count > 0) {
        const int records = words ? words->count() : 0;
        const std::vector<int> positions = drawPositions(count, records);
        if (records > 0)
            writeWords(result.text, words->wordsAt(positions), 0, positions.size());
        else
            result.notice = noWordsNotice(words);
    }
    if (plain)
        result.text = textTools::acc(result.text);
}

void progressionWords(Result &result, int count, const QString &progression, WordSource *words,
                      const std::function<bool()> &keepSearching)
{
    if (count <= 0)
        return;
    if (!words) {
        result.notice = noWordsNotice(words);
        return;
    }
    // Signs and digits match as themselves, letters of the progression in lower case;
    // a word's capital therefore never matches.
    const auto found = words->wordsMadeOf(progression.toLower(), keepSearching);
    if (!found || found->empty()) {
        if (!words->error().isEmpty())
            result.notice = words->error();
        else
            result.abandoned = true;
        return;
    }
    for (int i = 0; i < count; ++i) {
        result.text += (*found)[size_t(random::draw(int(found->size())))];
        result.text += u' ';
    }
}

void mockExam(Result &result, const Options &options, WordSource *words)
{
    QString &text = result.text;
    examGroups(text, options);
    text += QStringLiteral("\r\n\r\n");
    // The passage: 5 words, a four-digit number, then three runs of 6 words each closed
    // by a sign. Every word step starts with the start rule's blank (ajout is checked
    // from here on).
    const int records = words ? words->count() : 0;
    const std::vector<int> first = drawPositions(5, records);
    QString number;
    for (int i = 0; i < 4; ++i)
        number += digit();
    std::vector<int> positions = first;
    for (int run = 0; run < 3; ++run) {
        const std::vector<int> more = drawPositions(6, records);
        positions.insert(positions.end(), more.begin(), more.end());
    }
    std::vector<QString> drawn;
    if (records > 0)
        drawn = words->wordsAt(positions);
    else
        result.notice = noWordsNotice(words);

    text += u' ';
    writeWords(text, drawn, 0, 5);
    text += u' ';
    text += number;
    const char16_t signs[] = {u',', u'?', u'.'};
    for (int run = 0; run < 3; ++run) {
        text += u' ';
        writeWords(text, drawn, 5 + size_t(run) * 6, 6);
        text += QChar(signs[run]);
    }
    text = textTools::acc(text);
}

} // namespace

std::optional<Kind> kindNamed(const QString &name)
{
    for (const auto &[kind, text] : kindNames) {
        if (name == QLatin1String(text))
            return kind;
    }
    return std::nullopt;
}

QString kindName(Kind kind)
{
    for (const auto &[k, text] : kindNames) {
        if (k == kind)
            return QString::fromLatin1(text);
    }
    return {};
}

QString emptyTableNotice(const QString &table)
{
    return QStringLiteral("La table « %1 » ne contient aucun mot.").arg(table);
}

void start(QString &text, bool append)
{
    if (append)
        text += u' ';
    else
        text.clear();
}

int itemCount(const QString &groupCountText)
{
    const double value = numbers::leadingNumber(groupCountText);
    if (!(value >= 1))
        return 0;
    return value >= maximumItems ? maximumItems : int(value);
}

Result generate(Kind kind, const QString &present, bool append, const Options &options,
                WordSource *words, const std::function<bool()> &keepSearching)
{
    Result result;
    result.text = present;
    // The mock examination always replaces the text.
    start(result.text, kind == Kind::MockExam ? false : append);
    const int count = itemCount(options.groupCount);
    switch (kind) {
    case Kind::Letters:
        groups(result.text, options, Filter::Letters);
        break;
    case Kind::Digits:
        groups(result.text, options, Filter::Digits);
        break;
    case Kind::Punctuation:
        groups(result.text, options, Filter::Signs);
        break;
    case Kind::Mixed:
        groups(result.text, options, Filter::None);
        break;
    case Kind::Exam:
        examGroups(result.text, options);
        break;
    case Kind::ProgressionWords:
        progressionWords(result, count, options.progression, words, keepSearching);
        break;
    case Kind::Words:
    case Kind::WordsPlain:
        randomWords(result, count, words, kind == Kind::WordsPlain);
        break;
    case Kind::CallSigns:
        callSigns(result.text, count);
        break;
    case Kind::MockExam:
        mockExam(result, options, words);
        break;
    }
    return result;
}

} // namespace kelvora::exercises
