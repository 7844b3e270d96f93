#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// The examples in docs/protocol.md.
class ProtocolDocument {
  public:
    /// One frame of a message's section.
    struct Example {
        std::string messageClass;
        std::string kind;  ///< query, command, acknowledgement, answer, refused or denied
        ByteBuffer frame;
        /// As MessageClass writes them.
        std::map<std::string, std::string> fields;
    };

    /// One line of a conversation.
    struct Utterance {
        bool fromHost = false;
        ByteBuffer frame;
    };

    /// @throws std::runtime_error when there is no such page, or a line of an example makes no sense.
    explicit ProtocolDocument(const std::filesystem::path& page);

    const std::vector<Example>& examples() const { return examples_; }
    /// Those under a heading; none where there is no such heading.
    std::vector<Utterance> conversation(const std::string& heading) const;
    /// The example of a record, as a file would have it.
    const std::string& record() const { return record_; }

  private:
    void readExample(const std::string& line, const std::string& heading);

    std::vector<Example> examples_;
    std::map<std::string, std::vector<Utterance>> conversations_;
    std::string record_;
};

}  // namespace velmorindal
