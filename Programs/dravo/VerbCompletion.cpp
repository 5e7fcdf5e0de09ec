// VerbCompletion.cpp: completion for the shells and the man page, both made from the option table.

#include "Console.h"
#include "ExitCode.h"
#include "Verbs.h"
#include "Version.h"

#include <memory>

namespace
{
std::vector<CLI::App const *> VerbsOf(CLI::App const & i_app)
{
    return i_app.get_subcommands([](CLI::App const *) { return true; });
}

std::string Words(CLI::App const & i_verb)
{
    std::string words;
    for (CLI::Option const * option : i_verb.get_options())
        for (std::string const & name : option->get_lnames())
            words += (words.empty() ? "--" : " --") + name;
    return words;
}

std::string Bash(CLI::App const & i_app)
{
    std::string verbs;
    std::string cases;
    for (CLI::App const * verb : VerbsOf(i_app))
    {
        verbs += (verbs.empty() ? "" : " ") + verb->get_name();
        cases += "        " + verb->get_name() + ") words=\"" + Words(*verb) + "\" ;;\n";
    }
    return "_dravo() {\n    local words=\"" + verbs + " " + Words(i_app) +
           "\"\n    if ((COMP_CWORD > 1)); then\n        case \"${COMP_WORDS[1]}\" in\n" + cases +
           "        esac\n    fi\n    COMPREPLY=($(compgen -W \"$words\" -- \"${COMP_WORDS[COMP_CWORD]}\"))\n}\n"
           "complete -o default -F _dravo dravo\n";
}

// The one function serves both shells.
std::string Zsh(CLI::App const & i_app)
{
    return "#compdef dravo\nautoload -U +X bashcompinit && bashcompinit\n" + Bash(i_app);
}

std::string Quoted(std::string const & i_text)
{
    std::string quoted = "'";
    for (char const c : i_text)
        quoted += c == '\'' ? std::string("\\'") : std::string(1, c);
    return quoted + "'";
}

std::string Fish(CLI::App const & i_app)
{
    std::string text;
    for (CLI::App const * verb : VerbsOf(i_app))
    {
        text += "complete -c dravo -n __fish_use_subcommand -a " + verb->get_name() + " -d " +
                Quoted(verb->get_description()) + "\n";
        for (CLI::Option const * option : verb->get_options())
            for (std::string const & name : option->get_lnames())
                text += "complete -c dravo -n '__fish_seen_subcommand_from " + verb->get_name() + "' -l " + name +
                        (option->get_expected_max() > 0 ? " -r" : "") + " -d " + Quoted(option->get_description()) +
                        "\n";
    }
    return text;
}

// A hyphen of an option, and a point or apostrophe that begins a line, mean something to the formatter.
std::string Roff(std::string const & i_text)
{
    std::string roff;
    bool isLineStart = true;
    for (char const c : i_text)
    {
        if (isLineStart && (c == '.' || c == '\''))
            roff += "\\&";
        roff += c == '-' ? std::string("\\-") : c == '\\' ? std::string("\\e") : std::string(1, c);
        isLineStart = c == '\n';
    }
    return roff;
}

std::string OptionsOf(CLI::App const & i_verb)
{
    std::string text;
    for (CLI::Option const * option : i_verb.get_options())
        text += ".TP\n.B " + Roff(option->get_name(true, true)) + "\n" + Roff(option->get_description()) + "\n";
    return text;
}

std::string Man(CLI::App const & i_app)
{
    std::string text = ".TH DRAVO 1 \"\" \"dravo " + std::string(voz::workbench::kVersion) +
                       "\"\n.SH NAME\ndravo \\- simulation of sheet\\-metal forming\n.SH SYNOPSIS\n.B dravo\n"
                       ".I verb\n[\n.I options\n]\n.SH DESCRIPTION\n" +
                       Roff(i_app.get_description()) + "\n";
    for (CLI::App const * verb : VerbsOf(i_app))
        text += ".SH \"DRAVO " + Roff(verb->get_name()) + "\"\n" + Roff(verb->get_description()) + ".\n" +
                OptionsOf(*verb) + ".PP\n.nf\n" + Roff(verb->get_footer()) + "\n.fi\n";
    return text + ".SH \"EXIT STATUS\"\n.nf\n" + Roff(i_app.get_footer()) + "\n.fi\n";
}
} // namespace

void AddCompletion(CLI::App & io_app, Action & io_action)
{
    auto const shell = std::make_shared<std::string>();
    CLI::App * const verb = io_app.add_subcommand("completion", "Print the completion for a shell, or the man page");
    verb->add_option("FOR", *shell, "bash, zsh, fish or man")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish", "man"}));
    verb->footer("Example: dravo completion bash >~/.local/share/bash-completion/completions/dravo");
    verb->callback(
        [&io_app, &io_action, shell]
        {
            io_action = [&io_app, shell]
            {
                Console::Print(*shell == "bash"   ? Bash(io_app)
                               : *shell == "zsh"  ? Zsh(io_app)
                               : *shell == "fish" ? Fish(io_app)
                                                  : Man(io_app));
                return ExitDone;
            };
        });
}
