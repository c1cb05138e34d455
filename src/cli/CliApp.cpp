#include "CliApp.h"
#include "CliCommand.h"
#include "TextCommand.h"
#include "WordsCommand.h"

#include "settings/AppPaths.h"
#include "settings/SettingsStore.h"
#include "core/Numbers.h"
#include "core/TextUtils.h"
#include "core/Random.h"
#include "core/Windows1252.h"
#include "exercises/Generators.h"
#include "exercises/TableWords.h"
#include "settings/ChoiceLists.h"
#include "settings/UserProfile.h"
#include "morse/PatternLookup.h"
#include "morse/RenderSound.h"
#include "morse/SoundSettings.h"
#include "words/WordDatabase.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>
#include <QTextStream>

#include <map>
#include <optional>

namespace kelvora::cli {

namespace {

// Options that take a value, global and per command.
const QStringList valueOptions = {
    "--root", "--settings", "--user", "--wpm", "--word", "--freq", "--volume", "--ct", "--cs",
    "--cl", "--cm", "--sup", "--deb", "--fin", "--debfin", "--text", "--file", "--selection",
    "-o", "--txt", "--seed", "--count", "--min", "--max", "--progress", "--renfor", "--table",
    "--where", "--append",
};
// Options that stand alone.
const QStringList flagOptions = {"--blank", "--duplicates"};

Command parse(const QStringList &arguments)
{
    Command c;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        QString arg = arguments[i];
        if (arg == "--help" || arg == "-h" || flagOptions.contains(arg)) {
            c.options[arg.startsWith("--") ? arg : QStringLiteral("--help")] = QString();
            continue;
        }
        if (arg.startsWith('-') && arg.size() > 1) {
            QString value;
            bool inlineValue = false;
            if (arg.startsWith("--") && arg.contains('=')) {
                value = arg.mid(arg.indexOf('=') + 1);
                arg = arg.left(arg.indexOf('='));
                inlineValue = true;
            }
            if (!valueOptions.contains(arg))
                throw UsageError{QStringLiteral("Option inconnue : %1").arg(arg)};
            if (!inlineValue) {
                if (i + 1 >= arguments.size())
                    throw UsageError{QStringLiteral("Il manque la valeur de l'option %1.").arg(arg)};
                value = arguments[++i];
            }
            c.options[arg] = value;
        } else {
            c.positional << arg;
        }
    }
    return c;
}

SoundSettings soundSettings(const Command &c, const SettingsStore &store, const QString &user)
{
    SoundSettings s = SoundSettings::fromProfile(store, user);
    const std::pair<const char *, QString SoundSettings::*> overrides[] = {
        {"--wpm", &SoundSettings::vitesse}, {"--word", &SoundSettings::mot},
        {"--freq", &SoundSettings::frequence}, {"--volume", &SoundSettings::volume},
        {"--ct", &SoundSettings::ct}, {"--cs", &SoundSettings::cs},
        {"--cl", &SoundSettings::cl}, {"--cm", &SoundSettings::cm},
        {"--sup", &SoundSettings::sup}, {"--deb", &SoundSettings::deb},
        {"--fin", &SoundSettings::fin},
    };
    for (const auto &[name, member] : overrides) {
        if (const auto v = option(c, name))
            s.*member = *v;
    }
    if (const auto v = option(c, "--debfin")) {
        if (*v != "0" && *v != "1")
            throw UsageError{QStringLiteral("--debfin attend 0 ou 1, pas « %1 ».").arg(*v)};
        s.debfin = *v == "1";
    }
    s.applyClamps();
    return s;
}


void parseSelection(const QString &text, qsizetype *start, qsizetype *length)
{
    const QStringList parts = text.split(',');
    bool okStart = false;
    bool okLength = false;
    if (parts.size() == 2) {
        *start = parts[0].trimmed().toLongLong(&okStart);
        *length = parts[1].trimmed().toLongLong(&okLength);
    }
    if (!okStart || !okLength || *start < 0 || *length < 0)
        throw UsageError{QStringLiteral("--selection attend DEBUT,LONGUEUR (deux nombres positifs "
                                        "ou nuls), pas « %1 ».")
                             .arg(text)};
}

int timingCommand(const SoundSettings &s, PatternLookup &lookup, QTextStream &out,
                  QTextStream &err)
{
    const TimingResult r = CALCCONFIG(s.timingInputs(), lookup);
    if (!r.ok) {
        err << r.error << '\n';
        return exitError;
    }
    const TimingGrid &g = r.grid;
    const std::pair<const char *, double> lines[] = {
        {"NP", g.NP}, {"NT", g.NT}, {"ES", g.ES}, {"EL", g.EL}, {"EM", g.EM},
        {"VP", g.VP}, {"VT", g.VT}, {"VS", g.VS}, {"VL", g.VL}, {"VM", g.VM},
        {"TT", g.TT}, {"dot", r.plan.dot}, {"dash", r.plan.dash},
        {"elementGap", r.plan.elementGap}, {"letterGap", r.plan.letterGap},
        {"wordGap", r.plan.wordGap},
    };
    for (const auto &[name, value] : lines)
        out << name << '=' << numbers::format(value) << '\n';
    out << r.information << '\n';
    return exitOk;
}

int patternCommand(const Command &c, PatternLookup &lookup, QTextStream &out, QTextStream &err)
{
    if (c.positional.size() != 2)
        throw UsageError{QStringLiteral("La commande pattern attend un caractère.")};
    const QString &character = c.positional[1];
    if (text::characterCount(character) != 1)
        throw UsageError{QStringLiteral("La commande pattern attend un seul caractère, pas « %1 ».")
                             .arg(character)};
    QString error;
    const RefRow row = lookup.findRow(character, &error);
    if (!error.isEmpty()) {
        err << error << '\n';
        return exitError;
    }
    if (!lookup.hasCurrentRow()) {
        err << QStringLiteral("Le caractère « %1 » n'a pas de ligne dans la table de référence.")
                   .arg(character)
            << '\n';
        return exitError;
    }
    out << row.cw << '\t' << row.wav << '\n';
    return exitOk;
}

int renderCommand(const Command &c, const SoundSettings &s, const AppPaths &paths,
                  PatternLookup &lookup, QIODevice &in, QTextStream &out, QTextStream &err)
{
    if (c.positional.size() != 1)
        throw UsageError{QStringLiteral("La commande render ne prend pas d'argument ; le texte "
                                        "vient de --text, --file ou de l'entrée standard.")};
    SoundText text;
    // The selection counts in the text as the box shows it, after the trim.
    text.text = text::trimBlanks(readText(c, in));
    if (const auto sel = option(c, "--selection"))
        parseSelection(*sel, &text.selectionStart, &text.selectionLength);
    SoundTarget target = SoundTarget::exercise(paths);
    target.wavPath = option(c, "-o").value_or(target.wavPath);
    target.textPath = option(c, "--txt").value_or(target.textPath);

    const RenderResult r = renderSound(text, s, lookup, target);
    if (!r.ok) {
        err << r.error << '\n';
        return exitError;
    }
    out << QStringLiteral("Fichier écrit : ") << target.wavPath << '\n';
    out << QStringLiteral("Durée : ") << numbers::format(r.durationSeconds()) << " s\n";
    if (r.truncated) {
        // The file is kept, but it is not the whole text: not a success.
        err << QStringLiteral("Attention : le son a été arrêté à la taille maximale d'un fichier "
                              "WAV (4 Gio) ; le fichier est gardé.")
            << '\n';
        return exitCut;
    }
    return exitOk;
}

// The seed of the one random source: any whole number (a negative one counts modulo 2^64).
std::optional<quint64> seedOf(const Command &c)
{
    const auto text = option(c, "--seed");
    if (!text)
        return std::nullopt;
    const auto seed = random::parseSeed(*text);
    if (!seed)
        throw UsageError{QStringLiteral("--seed attend un nombre entier, pas « %1 ».").arg(*text)};
    return *seed;
}

int exerciseCommand(const Command &c, const SettingsStore &store, const QString &user,
                    const AppPaths &paths, QTextStream &out, QTextStream &err)
{
    if (c.positional.size() != 2)
        throw UsageError{QStringLiteral("La commande exercise attend un seul genre d'exercice.")};
    const auto kind = exercises::kindNamed(c.positional[1]);
    if (!kind)
        throw UsageError{QStringLiteral("Genre d'exercice inconnu : %1").arg(c.positional[1])};

    // What the window's boxes would hold for this user, each through its box's own rule.
    const UserProfile profile = UserProfile::read(store, user);
    namespace k = userKeys;
    exercises::Options options;
    options.groupCount = choiceLists::clampGroupCount(option(c, "--count").value_or(profile.text(k::nbgroup)));
    options.shortest = option(c, "--min").value_or(profile.text(k::grmin));
    options.longest = option(c, "--max").value_or(profile.text(k::grmax));
    options.progression = option(c, "--progress").value_or(profile.text(k::progress));
    options.reinforcement = option(c, "--renfor").value_or(QString()).trimmed();
    const auto present = option(c, "--append");

    const bool mockExam = *kind == exercises::Kind::MockExam;
    const QString table = mockExam ? QStringLiteral("mot")
                                   : option(c, "--table").value_or(profile.text(k::lasttable));
    TableWords words(paths.wordDatabasePath, table, mockExam ? QString() : option(c, "--where").value_or(QString()));

    // Nothing draws between the seeding and the exercise: the text is a function of the
    // seed, the options and the table.
    if (const auto seed = seedOf(c))
        random::seed(*seed);
    else
        random::seedFromClock();
    const QDeadlineTimer deadline(5000); // the window's watchdog
    const exercises::Result r = exercises::generate(*kind, present.value_or(QString()), present.has_value(),
                                                    options, &words,
                                                    [&deadline] { return !deadline.hasExpired(); });
    out << r.text;
    out.flush();
    if (r.abandoned)
        err << QString::fromUtf8(exercises::abandonMessage) << '\n';
    if (!r.notice.isEmpty()) {
        err << r.notice << '\n';
        // A condition or a table the engine refused is an error, an empty table is not.
        if (!words.error().isEmpty())
            return exitError;
    }
    return exitOk;
}

} // namespace

QString readText(const Command &c, QIODevice &in)
{
    if (const auto t = option(c, "--text"))
        return *t;
    if (const auto f = option(c, "--file")) {
        QFile file(*f);
        if (!file.open(QIODevice::ReadOnly))
            throw UsageError{QStringLiteral("Impossible de lire le fichier « %1 » : %2")
                                 .arg(*f, file.errorString())};
        return windows1252::decode(file.readAll());
    }
    QString text = QString::fromUtf8(in.readAll());
    if (text.endsWith("\r\n"))
        text.chop(2);
    else if (text.endsWith('\n'))
        text.chop(1);
    return text;
}

QString usage()
{
    return QStringLiteral(
        "Usage : kelvora-cli [--root DOSSIER] [--settings FICHIER] [--user NOM] [options du son] "
        "COMMANDE [options]\n"
        "\n"
        "Options du son (remplacent la valeur du profil pour cette exécution) :\n"
        "  --wpm N --word MOT --freq F --volume V --ct N --cs N --cl N --cm N --sup X\n"
        "  --deb SIGNE --fin SIGNE --debfin 0|1\n"
        "\n"
        "Commandes :\n"
        "  timing        affiche le calcul du timing (NOM=valeur) et la ligne d'information\n"
        "  pattern C     affiche le motif et le fichier son du caractère C\n"
        "  render        écrit le son du texte (--text T, --file F en Windows-1252, ou l'entrée\n"
        "                standard en UTF-8) ; --selection DEBUT,LONGUEUR ; -o WAV ; --txt TXT\n"
        "  exercise GENRE  écrit le texte d'un exercice sur la sortie standard ; GENRE : letters,\n"
        "                digits, punctuation, mixed, exam, progression-words, words, words-plain,\n"
        "                callsigns ou mock-exam ; --count N --min A --max B --progress P\n"
        "                --renfor C --table T --where CONDITION --append TEXTE\n"
        "  words tables  les tables de mots, une par ligne\n"
        "  words count|list [--table T] [--where CONDITION]\n"
        "                le nombre de mots, ou les mots un par ligne dans l'ordre de la table\n"
        "  words create NOM            crée une table de mots\n"
        "  words export [--table T]    écrit la table dans import/ et affiche le chemin du fichier\n"
        "  words import [--table T] [--file F]   sauvegarde la table, puis importe F (par défaut\n"
        "                import/mot.txt, Windows-1252, lignes finies par CR LF) et la nettoie\n"
        "  words empty|delete [--table T]        sauvegarde la table, puis la vide ou la supprime\n"
        "  words clean [--table T] [--blank] [--duplicates]   retire les mots vides et/ou les\n"
        "                doublons (les deux sans option) ; --table vaut par défaut la table du profil\n"
        "  transform OUTIL  groups (groupes de cinq), accents, reverse (inverse) ou spaces (espace\n"
        "                chaque caractère) sur --text, --file ou l'entrée standard ; le résultat tel quel\n"
        "  textfile NOM [--append TEXTE]  le texte d'exercice que donne le fichier textes/NOM\n"
        "\n"
        "--seed S (avant la commande) rend les tirages reproductibles.\n");
}

int run(const QStringList &arguments, const QString &executableDir, QTextStream &out,
        QTextStream &err, QIODevice &in)
{
    try {
        const Command c = parse(arguments);
        if (c.options.count("--help")) {
            out << usage();
            return exitOk;
        }
        if (c.positional.isEmpty())
            throw UsageError{QStringLiteral("Il manque la commande (timing, pattern, render, exercise, words, "
                                            "transform ou textfile).")};
        const QString command = c.positional.first();
        if (command != "timing" && command != "pattern" && command != "render" && command != "exercise"
            && command != "words" && command != "transform" && command != "textfile")
            throw UsageError{QStringLiteral("Commande inconnue : %1").arg(command)};
        if (command == "transform") // text in, text out: no installation needed
            return transformCommand(c, in, out, err);

        const AppPaths paths = AppPaths::fromProgramDir(resolveProgramDir(
            arguments, qEnvironmentVariable("KELVORA_ROOT"), executableDir));
        if (command == "textfile")
            return textFileCommand(c, paths, out, err);
        const SettingsStore store(
            resolveSettingsPath(arguments, qEnvironmentVariable("KELVORA_SETTINGS")));
        QString user = option(c, "--user").value_or(store.lastUser());
        if (user.isEmpty())
            throw UsageError{QStringLiteral("Le nom d'utilisateur ne peut pas être vide.")};
        const SoundSettings settings = soundSettings(c, store, user);

        if (!QFileInfo::exists(paths.wordDatabasePath)) {
            err << QStringLiteral("Base de mots introuvable : %1").arg(paths.wordDatabasePath)
                << '\n';
            return exitError;
        }
        WordDatabase database(paths.wordDatabasePath, WordDatabase::OpenMode::ReadOnly);
        if (!database.isOpen()) {
            err << database.errorString() << '\n';
            return exitError;
        }
        if (command == "words")
            return wordsCommand(c, store, user, paths, out, err);
        PatternLookup lookup(database);
        if (command == "exercise")
            return exerciseCommand(c, store, user, paths, out, err);
        if (command == "timing")
            return timingCommand(settings, lookup, out, err);
        if (command == "pattern")
            return patternCommand(c, lookup, out, err);
        return renderCommand(c, settings, paths, lookup, in, out, err);
    } catch (const UsageError &e) {
        err << e.message << "\n\n" << usage();
        return exitError;
    }
}

} // namespace kelvora::cli
