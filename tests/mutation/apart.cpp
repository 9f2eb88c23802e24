#include "tests/mutation/apart.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "tests/mutation/process.h"

namespace zrp_test::mutation {

namespace {

namespace fs = std::filesystem;

/// The programs linked for it, in their order.
const std::vector<std::string> quickPrograms = {"promises", "messages", "every_message",
                                                "validate"};
const std::vector<std::string> slowPrograms = {"differential"};
const std::vector<std::string> archives = {"zrp_oracle", "zrp_test_support"};

constexpr double buildPatience = 300;

/// The test that holds the constants of the wire core, which all tests include: it is compiled
/// anew.
const std::string constantsTest = "tests/promises/constants_test.cpp";

bool isWireHeader(const std::string& file) {
    return file == "Common/Source/Core/BRX/BrxBuf.h";
}

std::vector<std::string> compile(const Places& places, const std::string& source,
                                 const std::string& object) {
    return {places.compiler,
            "-std=c++20",
            "-w",
            "-O0",
            "-fno-rtti",
            "-ferror-limit=0",
            "-I" + places.scratch,
            "-I" + places.repository,
            "-c",
            source,
            "-o",
            object};
}

/// All sources of the library as one: the tables are compiled once.
std::string unityOf(const std::string& repository) {
    std::vector<std::string> files;
    for (const char* const folder : {"Common/Source/Core/BRX", "protocol", "protocol/codec"}) {
        for (const auto& entry : fs::directory_iterator(repository + "/" + folder)) {
            if (entry.path().extension() == ".cpp") {
                files.push_back(std::string(folder) + "/" + entry.path().filename().string());
            }
        }
    }
    std::sort(files.begin(), files.end());
    std::string unity;
    for (const std::string& file : files) {
        unity += "#include \"" + file + "\"\n";
        if (file == "protocol/relay_route.cpp") {  // the last that defines operations
            unity += "#undef ZRP_DEFINE_STRUCTURE\n#undef ZRP_DEFINE_UNION\n";
        }
    }
    return unity;
}

/// Runs a compiler or linker; what it said comes back where it failed, else nothing.
std::string build(const std::vector<std::string>& command, const std::string& log) {
    const Run result = run(command, {}, log, buildPatience);
    return result.ending == Ending::success ? "" : "failed\n" + readFile(log);
}

std::vector<std::string> objectsOf(const Places& places, const std::string& program,
                                   const std::string& except) {
    std::vector<std::string> objects;
    const std::string folder = places.programs + "/subject/tests/CMakeFiles/" + program + ".dir";
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const std::string path = entry.path().string();
        if (path.ends_with(".o") && (except.empty() || !path.ends_with(except))) {
            objects.push_back(path);
        }
    }
    return objects;
}

std::vector<std::string> link(const Places& places, const std::string& program,
                              const std::string& freshTest) {
    std::vector<std::string> command = {places.compiler, "-o", places.scratch + "/program",
                                        places.scratch + "/library.o"};
    std::string except;
    if (!freshTest.empty() && program == "promises_tests") {
        command.push_back(freshTest);
        except = "constants_test.cpp.o";
    }
    for (const std::string& object : objectsOf(places, program, except)) {
        command.push_back(object);
    }
    for (const std::string& archive : archives) {
        command.push_back(places.programs + "/subject/tests/lib" + archive + ".a");
    }
    command.insert(command.end(), {"-lgtest_main", "-lgtest", "-pthread"});
    return command;
}

/// Links these programs and runs them until one fails.
Verdict runLinked(const std::vector<std::string>& names, const std::string& freshTest,
                  const std::vector<Program>& programs, const Places& places) {
    const std::string log = places.scratch + "/log";
    for (const std::string& name : names) {
        const auto program =
            std::find_if(programs.begin(), programs.end(),
                         [&](const Program& one) { return one.tests().name == name; });
        if (program == programs.end()) {
            continue;
        }
        if (const std::string said = build(link(places, program->tests().program, freshTest), log);
            !said.empty()) {
            throw std::runtime_error("cannot link " + name + ": " + said);
        }
        const Verdict verdict = program->run(0, places.scratch + "/program", log);
        if (verdict.kind == Verdict::killed) {
            return verdict;
        }
    }
    return {Verdict::survived, "", false};
}

/// Whether wrong tables are still refused, and for the reason they should be.
Verdict runRefusedTables(const Places& places) {
    const std::string folder = places.scratch + "/tests/refused_tables";
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".cc") {
            const Run check = run({folder + "/check_refused.sh", places.compiler, places.scratch,
                                   entry.path().string()},
                                  {}, places.scratch + "/log", buildPatience);
            if (check.ending != Ending::success) {
                return {Verdict::killed, "refused_tables", false};
            }
        }
    }
    return {Verdict::survived, "", false};
}

/// A copy of the sources with the change in it.
void copyChanged(const Mutant& mutant, const Places& places) {
    fs::remove_all(places.scratch);
    for (const char* const folder : {"Common", "protocol", "tests/refused_tables"}) {
        fs::create_directories(places.scratch + "/" + folder);
        fs::copy(places.repository + "/" + folder, places.scratch + "/" + folder,
                 fs::copy_options::recursive);
    }
    const std::string path = places.scratch + "/" + mutant.file;
    std::string text = readFile(path);
    text.replace(mutant.begin, mutant.end - mutant.begin, mutant.replacement);
    writeFile(path, text);
    writeFile(places.scratch + "/library.cpp", unityOf(places.repository));
}

Verdict ofFailedBuild(const std::string& said) {
    const bool isStated = said.find("static assertion failed") != std::string::npos ||
                          said.find("static_assert failed") != std::string::npos;
    return isStated ? Verdict{Verdict::killed, "compiler", false}
                    : Verdict{Verdict::invalid, "", false};
}

}  // namespace

Verdict tryApart(const Mutant& mutant, const std::vector<Program>& programs, const Places& places) {
    const std::string log = places.scratch + "/log";
    copyChanged(mutant, places);
    std::string freshTest;
    if (isWireHeader(mutant.file)) {
        freshTest = places.scratch + "/constants.o";
        const std::string said =
            build(compile(places, places.repository + "/" + constantsTest, freshTest), log);
        if (!said.empty()) {
            return ofFailedBuild(said);
        }
    }
    const std::string object = places.scratch + "/library.o";
    const std::string said = build(compile(places, places.scratch + "/library.cpp", object), log);
    if (!said.empty()) {
        return ofFailedBuild(said);
    }
    Verdict verdict = runLinked(quickPrograms, freshTest, programs, places);
    if (verdict.kind != Verdict::killed) {
        verdict = runRefusedTables(places);
    }
    if (verdict.kind != Verdict::killed) {
        verdict = runLinked(slowPrograms, freshTest, programs, places);
    }
    return verdict;
}

}  // namespace zrp_test::mutation
