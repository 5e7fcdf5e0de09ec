// main.cpp: OneStepSolver, the program that the file route starts: reads a deck, solves it, writes the result beside
// it.

#include "DeckReader.h"
#include "DeckRecords.h"
#include "SolverSettings.h"
#include "SolverText.h"

#include "CATError.h"
#include "CATUnicodeString.h"
#include "VOZConsole.h"
#include "VOZHost.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverSpringback.h"
#include "VOZUtilitySolving.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace
{
enum ExitCode
{
    kDone = 0,
    kInternal = 1, // a fault of this program
    kUsage = 2,
    kInput = 3,  // deck or solver.cfg refused
    kSolve = 4,  // no solution
    kOutput = 5, // the result could not be written
};

constexpr char kHelp[] = R"(OneStepSolver -pfpi DECK -sd FOLDER
OneStepSolver -pspi DECK -sd FOLDER

Solves a one-step deck: finds the flat blank of a formed part with its strains, or its shape after springback.

  -pfpi DECK   the deck; the result stands beside it afterwards, with the extension .fpo
  -pspi DECK   the deck; the shape after springback stands beside it, with the extension .spo
  -sd FOLDER   the folder in which an optional solver.cfg stands
  --help       this text

Beside the result stand a summary (.sum) and a log (.log) of the forming, and with -pspi those of the springback
(-springback.sum, -springback.log). Exit codes: 0 done, 2 wrong use, 3 deck or solver.cfg
refused, 4 no solution, 5 result not written, 1 a fault of the program.

Example: OneStepSolver -pfpi "job/deck.fpi" -sd "job"
)";

constexpr char kExpected[] = "; expected -pfpi DECK -sd FOLDER, or -pspi DECK -sd FOLDER";

constexpr char kSpringbackSuffix[] = "-springback"; // of summary and log, behind the deck's name

// Behind what the kernel says: its indices are not the deck's numbers.
constexpr char kKernelCounts[] = "\n(nodes, elements and rows are counted from 0 here, in the deck from 1)";

struct Options
{
    std::string deck;
    std::string folder;
    bool springback = false;
};

// A contract of the kernel that breaks leaves no result worth having.
class EndingHost : public VOZHost
{
public:
    EndingHost() : mOuter(Current()) { Install(this); }
    ~EndingHost() override { Install(&mOuter); }
    EndingHost(EndingHost const &) = delete;
    EndingHost & operator=(EndingHost const &) = delete;

    // Of solver.cfg; without it what the environment says holds.
    void SetSteps(int i_steps) { mSteps = std::to_string(i_steps); }

    std::optional<std::string> EnvironmentValue(std::string const & i_name) override
    {
        return i_name == "VOZStrokeSteps" && mSteps ? mSteps : mOuter.EnvironmentValue(i_name);
    }
    std::shared_ptr<VOZHostDocument> CurrentDocument() override { return mOuter.CurrentDocument(); }
    void BrokenContract(std::string const & i_text, std::string const & i_file, int i_line) override
    {
        std::fprintf(stderr, "OneStepSolver: broken contract: %s (%s:%d)\n", i_text.c_str(), i_file.c_str(), i_line);
        std::exit(kInternal);
    }

private:
    VOZHost & mOuter;
    std::optional<std::string> mSteps;
};

// Shows how far the solve has come, where somebody looks.
class Progress
{
public:
    explicit Progress(int i_solves) : mIsShown(VOZConsole::IsTerminal(stderr)), mSolves(i_solves) {}
    ~Progress()
    {
        if (mLast >= 0)
            std::fputs("\r                    \r", stderr);
    }
    Progress(Progress const &) = delete;
    Progress & operator=(Progress const &) = delete;

    void Next() { ++mDone; } // the solves follow one another

    static int Report(double i_percent, void * i_task, void *)
    {
        auto & self = *static_cast<Progress *>(i_task);
        int const percent = static_cast<int>((100.0 * self.mDone + i_percent) / self.mSolves);
        if (self.mIsShown && percent != self.mLast)
        {
            self.mLast = percent;
            std::fprintf(stderr, "\rsolving %3d %%", percent);
            std::fflush(stderr);
        }
        return 0;
    }

private:
    bool mIsShown;
    int mSolves, mDone = 0;
    int mLast = -1;
};

int refuse(ExitCode code, std::string const & text)
{
    std::fprintf(stderr, "OneStepSolver: %s\n", text.c_str());
    return code;
}

// Empty: all is well. Otherwise what is wrong.
std::string parseArguments(int argc, char ** argv, Options & o_options)
{
    for (int i = 1; i < argc; i += 2)
    {
        std::string const option = argv[i];
        bool const isDeck = option == "-pfpi" || option == "-pspi";
        if (!isDeck && option != "-sd")
            return "unknown option \"" + option + "\"" + kExpected;
        std::string & value = isDeck ? o_options.deck : o_options.folder;
        if (i + 1 == argc || argv[i + 1][0] == '\0')
            return option + " has no value" + kExpected;
        if (!value.empty())
            return isDeck ? "a second deck with " + option + kExpected : option + " comes a second time";
        value = argv[i + 1];
        o_options.springback = o_options.springback || option == "-pspi";
    }
    return o_options.deck.empty() ? std::string("no deck") + kExpected : "";
}

// Paths of the file route may come with backslashes on every system.
std::filesystem::path pathOf(std::string text)
{
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

// The summary's name ends in suffix; so does the log's.
void setFiles(VOZMultiStageSolverIOData_s & io_data, std::filesystem::path const & deck, char const * suffix)
{
    CATUnicodeString const folder(deck.parent_path().string().c_str());
    CATUnicodeString const summary((deck.stem().string() + suffix + ".sum").c_str());
    io_data.SetWorkingDir(folder.ConvertToUTF16().c_str());
    io_data.SetSummaryFileName(summary.ConvertToUTF16().c_str());
}

int solve(Options const & options, EndingHost & io_host)
{
    std::filesystem::path const deckPath = pathOf(options.deck);
    std::filesystem::path const output =
        std::filesystem::path(deckPath).replace_extension(options.springback ? ".spo" : ".fpo");
    if (output == deckPath)
        return refuse(kUsage, options.deck + ": the deck has the extension of results; expected another");
    // Whoever started this program looks for its result alone: an older one must not be taken for it.
    std::error_code ignored;
    std::filesystem::remove(output, ignored);

    voz::deck::Deck const deck = voz::deck::ReadDeck(deckPath.string());
    voz::deck::SolverSettings settings;
    if (!options.folder.empty())
        settings = voz::deck::ReadSettings((pathOf(options.folder) / "solver.cfg").string());
    if (settings.steps)
        io_host.SetSteps(*settings.steps);
    auto const data = voz::deck::MakeRecords(deck, settings);
    std::vector<double> shape(options.springback ? 3 * deck.nodes.size() : 0);
    {
        Progress progress(options.springback ? 2 : 1);
        setFiles(*data, deckPath, "");
        if (VOZUtilitySolving::Evaluate(data.get(), &Progress::Report, &progress, nullptr) != VOZUtilitySolving::Done)
            return refuse(kSolve, "the solve was stopped");
        progress.Next();
        if (options.springback)
        {
            setFiles(*data, deckPath, kSpringbackSuffix);
            if (VOZSolverSpringback::UnfoldStage(data.get(), nullptr, &Progress::Report, &progress, nullptr,
                                                 shape.data()) != VOZSolverSpringback::Done)
                return refuse(kSolve, "no shape after springback; " + deckPath.stem().string() + kSpringbackSuffix +
                                          ".log says why");
        }
    }
    voz::deck::CommitText(output.string(), options.springback ? voz::deck::ShapeText(deck, shape.data())
                                                              : voz::deck::ResultText(deck, *data));
    std::string const stem = deckPath.stem().string() + (options.springback ? kSpringbackSuffix : "");
    std::filesystem::path const summary = deckPath.parent_path() / (stem + ".sum");
    if (std::filesystem::exists(summary, ignored))
        std::fputs(voz::deck::ReadWholeFile(summary.string()).c_str(), stdout);
    return kDone;
}

int run(int argc, char ** argv, EndingHost & io_host)
{
    if (argc == 2 && (std::string(argv[1]) == "--help" || std::string(argv[1]) == "-h"))
    {
        std::fputs(kHelp, stdout);
        return kDone;
    }
    Options options;
    if (std::string const wrong = parseArguments(argc, argv, options); !wrong.empty())
        return refuse(kUsage, wrong);
    return solve(options, io_host);
}
} // namespace

int main(int argc, char ** argv)
{
    try
    {
        EndingHost host;
        return run(argc, argv, host);
    }
    catch (voz::deck::DeckError const & error)
    {
        return refuse(kInput, error.what());
    }
    catch (CATError const & error)
    {
        return refuse(kSolve, std::string(error.Message()) + kKernelCounts);
    }
    catch (voz::deck::ResultError const & error)
    {
        return refuse(kSolve, error.what());
    }
    catch (voz::deck::WriteError const & error)
    {
        return refuse(kOutput, error.what());
    }
    catch (std::exception const & error)
    {
        return refuse(kInternal, error.what());
    }
}
