// The encrypted files of ../shared/corpus: each opens with the password of its truth sidecar in
// both readers and is refused without it or with a wrong one, on the command line too; the
// password reaches the helper process only through its pipe. Also the Jet database password
// flag of every Jet 3/4 file.

#include "support/FileContents.h"
#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include "loader/IsolatedReader.h"
#include "mdb/DatabaseHeader.h"
#include "mdb/InProcessReader.h"
#include "mdb/OfficePageCipher.h"
#include "model/TOrbMDBFile.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>

namespace vellum {
namespace {

struct CorpusFile {
    std::string name;
    std::string path;
    nlohmann::json truth;
};

/// Every corpus file with a truth sidecar that `wanted` accepts.
std::vector<CorpusFile> corpusFiles(const std::function<bool(const nlohmann::json &)> &wanted)
{
    std::vector<CorpusFile> files;
    const std::string folder = test::sharedPath("corpus-truth");
    if (folder.empty())
        return files;
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".json")
            continue;
        std::ifstream in(entry.path());
        nlohmann::json truth = nlohmann::json::parse(in, nullptr, false);
        if (truth.is_discarded() || !wanted(truth))
            continue;
        const std::string name = truth["file"];
        const std::string path = test::sharedPath("corpus/" + name);
        if (!path.empty())
            files.push_back({name, path, std::move(truth)});
    }
    std::sort(files.begin(), files.end(), [](const auto &a, const auto &b) { return a.name < b.name; });
    return files;
}

std::vector<CorpusFile> encryptedFiles()
{
    return corpusFiles([](const nlohmann::json &truth) { return truth["password"].is_string(); });
}

std::unique_ptr<FileReader> makeReader(bool isolated)
{
    if (!isolated)
        return std::make_unique<InProcessReader>();
    IsolatedLoadOptions options;
    options.helperPath = std::string(VELLUM_BIN_DIR) + "/vellum-loader";
    return std::make_unique<IsolatedReader>(options);
}

/// Every truth table is there with its row count.
void expectTablesOfTruth(const TOrbMDBFile &file, const CorpusFile &corpus)
{
    ASSERT_FALSE(corpus.truth["tables"].empty());
    for (const auto &table : corpus.truth["tables"]) {
        const TOrbMDBTable *ours = file.tableNamed(table["name"].get<std::string>());
        ASSERT_TRUE(ours) << table["name"];
        EXPECT_EQ(ours->rowCount(), table["rowsTotal"].get<std::size_t>()) << table["name"];
    }
}

TEST(EncryptedFiles, OpenWithTheirPasswordInBothReadersAndNeverWithoutIt)
{
    const auto files = encryptedFiles();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus-truth or ../shared/corpus is absent";
    EXPECT_EQ(files.size(), 6u);
    for (const CorpusFile &corpus : files) {
        const std::string password = corpus.truth["password"];
        const auto header = DatabaseHeader::readFile(corpus.path);
        ASSERT_TRUE(header) << corpus.name;
        std::printf("%s: %s\n", corpus.name.c_str(), encryptionSchemeName(encryptionSchemeOf(*header)));
        for (const bool isolated : {false, true}) {
            SCOPED_TRACE(corpus.name + (isolated ? " (isolated)" : " (in process)"));
            const auto reader = makeReader(isolated);
            const struct {
                std::string password;
                OpenFailure failure;
            } refusals[] = {{"", OpenFailure::PasswordNeeded}, {password + "!", OpenFailure::WrongPassword}};
            for (const auto &refusal : refusals) {
                auto file = TOrbMDBFile::fromPath(corpus.path);
                reader->setPassword(refusal.password);
                EXPECT_FALSE(file->open(*reader));
                EXPECT_EQ(file->openFailure(), refusal.failure) << "password '" << refusal.password << "'";
                EXPECT_TRUE(file->tables().empty());
            }
            auto file = TOrbMDBFile::fromPath(corpus.path);
            reader->setPassword(password);
            ASSERT_TRUE(file->open(*reader));
            EXPECT_EQ(file->openFailure(), OpenFailure::None);
            expectTablesOfTruth(*file, corpus);
            EXPECT_FALSE(file->databasePasswordSet());
        }
    }
}

TEST(EncryptedFiles, CommandLineRefusesWithoutTheRightPasswordAndReadsWithIt)
{
    const auto files = encryptedFiles();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus-truth or ../shared/corpus is absent";
    test::TempDir temp;
    for (const CorpusFile &corpus : files) {
        SCOPED_TRACE(corpus.name);
        const std::string password = corpus.truth["password"];
        const std::string firstTable = corpus.truth["tables"][0]["name"];
        // Standard input is /dev/null, not a terminal: nothing is asked, the open fails.
        const struct {
            std::vector<std::string> args;
            std::string message;
        } refusals[] = {
            {{"list", corpus.path}, "File (" + corpus.path + ") is encrypted: a password is needed\n"},
            {{"schema", corpus.path}, "File (" + corpus.path + ") is encrypted: a password is needed\n"},
            {{"rows", corpus.path, firstTable, "--db-password", "wrong"},
             "The password for (" + corpus.path + ") is not correct\n"},
            {{"list", corpus.path, "--db-password", password + " "},
             "The password for (" + corpus.path + ") is not correct\n"},
        };
        for (const auto &refusal : refusals) {
            const auto result = test::runTool("vellum-cli", refusal.args);
            EXPECT_EQ(result.exitStatus, 1) << refusal.message;
            EXPECT_NE(result.err.find(refusal.message), std::string::npos) << result.err;
            EXPECT_EQ(result.err.find("cannot be opened"), std::string::npos) << result.err;
            EXPECT_TRUE(result.out.empty());
        }
        // The password file's first line counts, without its line end.
        const std::string passwordFile = temp.path() + "/" + corpus.name + ".password";
        std::ofstream(passwordFile) << password << "\r\nnot the password\n";
        const auto listed = test::runTool("vellum-cli", {"list", corpus.path, "--db-password-file", passwordFile});
        ASSERT_EQ(listed.exitStatus, 0) << listed.err;
        for (const auto &table : corpus.truth["tables"]) {
            const std::string line =
                table["name"].get<std::string>() + "\t" + std::to_string(table["rowsTotal"].get<int>()) + "\n";
            EXPECT_NE(listed.out.find(line), std::string::npos) << line << " in\n" << listed.out;
        }
        const auto rows = test::runTool("vellum-cli", {"rows", corpus.path, firstTable, "--db-password", password});
        EXPECT_EQ(rows.exitStatus, 0) << rows.err;
        EXPECT_FALSE(rows.out.empty());
    }
    const struct {
        std::vector<std::string> args;
        int status;
        const char *message;
    } usage[] = {
        {{"list", files[0].path, "--db-password"}, 2, "--db-password needs the password"},
        {{"list", files[0].path, "--db-password-file"}, 2, "--db-password-file needs a file name"},
        {{"list", files[0].path, "--db-password", "a", "--db-password", "b"}, 2, "only once"},
        {{"list", files[0].path, "--db-password-file", temp.path() + "/absent"}, 1, "cannot read the password file"},
    };
    for (const auto &c : usage) {
        const auto result = test::runTool("vellum-cli", c.args);
        EXPECT_EQ(result.exitStatus, c.status) << c.message;
        EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    }
}

TEST(EncryptedFiles, PasswordReachesTheHelperThroughAPipeOnly)
{
    const auto files = encryptedFiles();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus-truth or ../shared/corpus is absent";
    // A stand-in helper that records its arguments, its environment and what it reads on the
    // password descriptor, then fails.
    test::TempDir temp;
    const std::string script = temp.path() + "/fake-loader";
    std::ofstream(script) << "#!/bin/sh\n"
                             "for a in \"$@\"; do printf '%s\\n' \"$a\"; done > '"
                          << temp.path() << "/argv'\n"
                          << "env > '" << temp.path() << "/environ'\n"
                          << "cat <&4 > '" << temp.path() << "/input'\n"
                          << "exit 1\n";
    ASSERT_EQ(chmod(script.c_str(), 0700), 0);
    const CorpusFile &corpus = files[0];
    const std::string password = corpus.truth["password"];
    IsolatedLoadOptions options;
    options.helperPath = script;
    IsolatedReader reader(options);
    reader.setPassword(password);
    auto file = TOrbMDBFile::fromPath(corpus.path);
    EXPECT_FALSE(file->open(reader));
    const std::string argv = test::fileContents(temp.path() + "/argv");
    ASSERT_NE(argv.find(corpus.path), std::string::npos) << "the stand-in ran";
    EXPECT_NE(argv.find("--password-fd\n4\n"), std::string::npos) << argv;
    EXPECT_EQ(argv.find(password), std::string::npos) << argv;
    EXPECT_EQ(test::fileContents(temp.path() + "/environ").find(password), std::string::npos);
    EXPECT_EQ(test::fileContents(temp.path() + "/input"), password);
}

/// Everything the terminal shows until the program ends, answering `answer` once the prompt
/// appeared; the program's exit status in `status`.
std::string runOnTerminal(const std::vector<std::string> &argv, const std::string &answer, int &status)
{
    int master = -1;
    const pid_t pid = forkpty(&master, nullptr, nullptr, nullptr);
    if (pid == 0) {
        std::vector<char *> args;
        for (const auto &arg : argv)
            args.push_back(const_cast<char *>(arg.c_str()));
        args.push_back(nullptr);
        execv(args[0], args.data());
        _exit(127);
    }
    std::string shown;
    bool answered = false;
    for (;;) {
        pollfd ready{master, POLLIN, 0};
        if (poll(&ready, 1, 20000) <= 0)
            break;
        char buffer[512];
        const ssize_t n = read(master, buffer, sizeof buffer);
        if (n <= 0)
            break; // the program ended (EIO once the terminal's last user is gone)
        shown.append(buffer, static_cast<std::size_t>(n));
        if (!answered && shown.find("Password for ") != std::string::npos && shown.find(": ") != std::string::npos) {
            const std::string line = answer + "\n";
            if (write(master, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
                break;
            answered = true;
        }
    }
    close(master);
    int raw = 0;
    waitpid(pid, &raw, 0);
    status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return shown;
}

TEST(EncryptedFiles, CommandLineAsksOnATerminalWithoutEcho)
{
    const auto files = encryptedFiles();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus-truth or ../shared/corpus is absent";
    const CorpusFile &corpus = files.front(); // its password is not part of its path
    const std::string password = corpus.truth["password"];
    const std::string cli = std::string(VELLUM_BIN_DIR) + "/vellum-cli";
    const std::string table = corpus.truth["tables"][0]["name"];
    int status = -1;
    std::string shown = runOnTerminal({cli, "list", corpus.path}, password, status);
    EXPECT_EQ(status, 0) << shown;
    EXPECT_NE(shown.find("Password for " + corpus.path + ": "), std::string::npos) << shown;
    EXPECT_NE(shown.find(table + "\t"), std::string::npos) << shown;
    EXPECT_EQ(shown.find(password), std::string::npos) << "the password is not echoed: " << shown;

    shown = runOnTerminal({cli, "list", corpus.path}, password + "x", status);
    EXPECT_EQ(status, 1) << shown;
    EXPECT_NE(shown.find("The password for (" + corpus.path + ") is not correct"), std::string::npos) << shown;
}

TEST(JetDatabasePassword, HeaderFlagMatchesTheTruthAndShowsAsAnInformationRow)
{
    const auto jetFiles = corpusFiles([](const nlohmann::json &truth) {
        const std::string format = truth["jackcessFileFormat"];
        return format.find("[VERSION_3]") != std::string::npos || format.find("[VERSION_4]") != std::string::npos;
    });
    if (jetFiles.empty())
        GTEST_SKIP() << "../shared/corpus-truth or ../shared/corpus is absent";
    std::size_t withPassword = 0;
    for (const CorpusFile &corpus : jetFiles) {
        const auto header = DatabaseHeader::readFile(corpus.path);
        ASSERT_TRUE(header) << corpus.name;
        const bool expected = corpus.truth["databasePassword"].is_string();
        EXPECT_EQ(header->hasDatabasePassword(), expected) << corpus.name;
        withPassword += expected;
        if (!expected && corpus.name.find("jackcessencrypt") == std::string::npos)
            continue;
        // Files with a password, and the page-encoded one without: both readers carry the flag.
        for (const bool isolated : {false, true}) {
            const auto reader = makeReader(isolated);
            auto file = TOrbMDBFile::fromPath(corpus.path);
            ASSERT_TRUE(file->open(*reader)) << corpus.name;
            EXPECT_EQ(file->databasePasswordSet(), expected) << corpus.name;
            const auto labels = file->getObjectLabels();
            const auto values = file->getObjectValues();
            const bool shown = std::find(labels.begin(), labels.end(), "Password protected") != labels.end();
            EXPECT_EQ(shown, expected) << corpus.name;
            if (expected) {
                EXPECT_EQ(labels.back(), "Password protected") << "after the existing rows";
                EXPECT_EQ(infoValueText(values.at("Password protected")), "YES");
            }
        }
    }
    EXPECT_GE(withPassword, 1u);
}

} // namespace
} // namespace vellum
