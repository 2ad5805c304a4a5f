#include "bench/installation.h"

#include "bench/replay.h"

#include <fstream>
#include <stdexcept>

namespace fs = std::filesystem;

const examples::Example& ExampleOf(const std::string& name) {
    for (const examples::Example& example : examples::Examples()) {
        if (example.name.toStdString() == name) {
            return example;
        }
    }
    throw std::runtime_error("there is no example " + name);
}

Installation::Installation(fs::path build, fs::path folder)
    : m_build(std::move(build)),
      m_folder(std::move(folder)) {
    fs::remove_all(m_folder);
    fs::create_directories(m_folder);
}

fs::path Installation::SourceOf(const examples::Example& example, const std::string& company) const {
    return FolderOf(company) / example.source.toStdString();
}

void Installation::Make(const examples::Example& example, long rows, const std::string& company, int seed) {
    const fs::path folder = FolderOf(company);
    fs::create_directories(folder);
    RunProgram({(m_build / "examples/quadrix-examples").string(), example.name.toStdString(), "--rows",
                std::to_string(rows), "--seed", std::to_string(seed), "--company", company, "--out", folder.string()});
    const std::string source = SourceOf(example, company).string();
    std::ofstream(m_folder / "Quadrix.ini")
        << "[DATABASE]\r\nProvider=SQLITE\r\nDatabaseName=quadrix.db\r\n"
        << "[IMPORT]\r\nDatabasename=" << source << "\r\nDSN=" << source << "\r\nDOC_DateStart=01/01/2017\r\n";
    if (std::ifstream own(folder / "Solution.ini"); own) { // its place is beside the settings
        const std::string text{std::istreambuf_iterator<char>(own), {}};
        const std::string key = "DatabaseName=";
        std::ofstream(m_folder / "Solution.ini")
            << std::string(text).insert(text.find(key) + key.size(), folder.filename().string() + "/");
    }
    RunProgram(Program({"create-database", "--company", company, "--name", "Misure " + company}));
    if (const fs::path setUp = folder / "quadrix.sql"; fs::exists(setUp)) {
        Replay(Database().string(), setUp.string());
    }
}

std::vector<std::string> Installation::Program(const std::vector<std::string>& command) const {
    std::vector<std::string> words{(m_build / "cli/quadrix-import-cli").string(), "--config", m_folder.string()};
    words.insert(words.end(), command.begin(), command.end());
    return words;
}

std::vector<std::string> Installation::Import(const examples::Example& example, const std::string& import,
                                              const std::string& company) const {
    const QStringList parts = QString::fromStdString(import).split(u':');
    std::vector<std::string> words = Program({"import", "--company", company, "--origin", example.origin.toStdString(),
                                              "--data", parts.first().toStdString(), "--errors", "ignore"});
    for (qsizetype i = 1; i < parts.size(); ++i) {
        const QString answer =
            QString(parts.at(i))
                .replace(QStringLiteral("%SOURCE%"), QString::fromStdString(SourceOf(example, company).string()));
        const bool isYesOrNo = answer == QStringLiteral("yes") || answer == QStringLiteral("no");
        words.insert(words.end(), {isYesOrNo ? "--answer" : "--input", answer.toStdString()});
    }
    return words;
}
