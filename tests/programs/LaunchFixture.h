// LaunchFixture.h: a small forming job for the incremental route, its folder, and the stand-in for the solver.

#ifndef LAUNCHFIXTURE_H
#define LAUNCHFIXTURE_H

#include "DriverFixture.h"
#include "StandInMotion.h"
#include "VOZSolverIncremental.h"

#include <chrono>
#include <cstdlib>
#include <thread>

// Variables of this process, which the launcher and the solver inherit.
class Variable
{
public:
    Variable(char const * i_name, std::string const & i_value) : mName(i_name) { Set(i_value); }
    ~Variable() { Set(""); }
    Variable(Variable const &) = delete;
    Variable & operator=(Variable const &) = delete;

    void Set(std::string const & i_value)
    {
#if defined(_WIN32)
        _putenv_s(mName, i_value.c_str());
#else
        i_value.empty() ? unsetenv(mName) : setenv(mName, i_value.c_str(), 1);
#endif
    }

private:
    char const * mName;
};

class LaunchFixture : public DriverFixture
{
protected:
    LaunchFixture() : DriverFixture(flatSheet(kBlankColumns, 0.0)), die(flatSheet(7, 30.0)), punch(flatSheet(6, -5.0))
    {
        host.environment["CATTemp"] = work.Path() + "/";
        Name(part, "VOZBlank", 0, 0);
        Name(die, "VOZDie", 1000, 1000);
        Name(punch, "VOZPunch", 2000, 2000);
        meshes = {&part, &die, &punch, nullptr};
        meshCount = 3;
        standIn.Set(VOZ_STAND_IN_SOLVER);
    }

    static constexpr int kBlankColumns = 8;

    // 120 mm x 80 mm; a little dome keeps the gap from being one number.
    static VOZCatMesh flatSheet(int columns, double height)
    {
        samples::Grid grid;
        grid.columns = columns;
        grid.rows = 5;
        grid.x1 = 120.0;
        grid.y1 = 80.0;
        double const dome = height > 0.0 ? 4.0 : 0.0;
        grid.surface = [height, dome](double x, double y) {
            return samples::Point{x, y, height + dome * std::sin(x / 38.2) * std::sin(y / 25.5)};
        };
        return grid.mesh();
    }

    static void Name(VOZCatMesh & io_mesh, char const * i_name, int i_nodes, int i_elements)
    {
        io_mesh.SetName(i_name);
        io_mesh.IdsOffset(i_nodes, i_elements);
    }

    std::string Folder() const { return work.Path("part"); }
    std::string Read(std::string const & i_name) const { return work.Read("part/" + i_name); }

    // The deck and its include files.
    long Run()
    {
        Prepare(solver);
        return solver.Run(nullptr);
    }
    void Prepare(VOZSolverIncremental & io_solver)
    {
        give(io_solver);
        CATUnicodeString name("part");
        io_solver.SetPartName(name);
    }

    // A value of the status file.
    std::string Status(std::string const & i_key) const
    {
        std::string const text = "\n" + Read("launch.status");
        std::size_t const at = text.find("\n" + i_key + "=");
        std::size_t const first = at + i_key.size() + 2;
        return at == std::string::npos ? "" : text.substr(first, text.find('\n', first) - first);
    }

    // Until done or failed; every state that was seen on the way, in order.
    std::vector<std::string> Wait() const
    {
        std::vector<std::string> seen;
        auto const limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (std::chrono::steady_clock::now() < limit)
        {
            std::string const state = Status("state");
            if (!state.empty() && (seen.empty() || seen.back() != state))
                seen.push_back(state);
            if (state == "done" || state == "failed")
                break;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return seen;
    }

    VOZCatMesh die, punch;
    VOZSolverIncremental solver;
    Variable standIn{"VOZDynaSolver", ""};
    Variable standInMode{"StandInMode", ""};
};

#endif
