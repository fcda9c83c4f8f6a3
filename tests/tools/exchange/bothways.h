// Benches exported and imported again.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "tools/bench/bench.h"
#include "tools/exchange/benchfixture.h"
#include "tools/exchange/walks.h"

class CBothWays : public CBenchFixture {
protected:
    // What is exported and imported again walks as before.
    void ExpectSameBothWays(const std::string &form, const std::string &options = {})
    {
        const std::string script = (m_folder / "script").string();
        const std::string back = (m_folder / "back.toml").string();
        SToolRun run = Export("--to " + form + " -o " + script + " " + options);
        ASSERT_EQ(run.status, 0) << run.err << m_text;
        run = RunShell("tesk import " + script + " --from " + form + " -o " + back);
        ASSERT_EQ(run.status, 0) << run.err << ReadFile(script);
        EXPECT_EQ(run.err, "");
        ExpectEqualWalks(PlayedWalks(Bench()), PlayedWalks(back), m_text + ReadFile(script) + ReadFile(back));
    }

    void ExpectBench(const std::string &bench, const std::string &context)
    {
        std::ofstream(m_folder / "made.toml") << bench;
        std::vector<tesk::SBenchFault> faults;
        const tesk::SBench read = tesk::ReadBench((m_folder / "made.toml").string(), faults);
        for (const tesk::SBenchFault &fault : faults)
            EXPECT_TRUE(fault.isOfFormula || fault.severity != tesk::ESeverity::Error)
                << tesk::FaultLine(read, fault) << "\n"
                << context;
    }

    SToolRun Import(const std::string &script, const std::string &options)
    {
        std::ofstream(m_folder / "script") << script;
        const SToolRun run = RunShell("cd " + (m_folder / ".").string() + "; tesk import script " + options);
        return run;
    }

    // The signals of the bench that is made, with what is told in front.
    std::string Imported(const std::string &script, const std::string &options)
    {
        const SToolRun run = Import(script, options);
        const std::size_t signals = run.out.find("[signals]\n");
        return run.err + (signals != run.out.npos ? run.out.substr(signals + 10) : run.out);
    }
};
