#pragma once

#include "bench/measure.h"
#include "examples/examples.h"

#include <filesystem>
#include <string>
#include <vector>

/// The example of that name. Raises `std::runtime_error` when there is none.
const examples::Example& ExampleOf(const std::string& name);

/// Settings and an embedded database in a folder, with companies and the sources of examples.
class Installation {
public:
    /// @param build holds the programs @param folder is emptied
    Installation(std::filesystem::path build, std::filesystem::path folder);

    /// Makes a company and the source of an example, which is the one of the next imports, and what an operator would
    /// have set up before: translations, VAT codes, causes of documents.
    void Make(const examples::Example& example, long rows, const std::string& company, int seed);
    /// The program with its settings and a command.
    std::vector<std::string> Program(const std::vector<std::string>& command) const;
    /// An import of an example. @param import as the entry of the example has it ("cli:no")
    std::vector<std::string> Import(const examples::Example& example, const std::string& import,
                                    const std::string& company) const;

    std::filesystem::path Folder() const { return m_folder; }
    std::filesystem::path Database() const { return m_folder / "quadrix.db"; }
    std::filesystem::path FolderOf(const std::string& company) const { return m_folder / ("source" + company); }
    /// What the settings name as the source.
    std::filesystem::path SourceOf(const examples::Example& example, const std::string& company) const;

private:
    std::filesystem::path m_build;
    std::filesystem::path m_folder;
};
