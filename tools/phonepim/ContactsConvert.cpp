#include "ContactsConvert.h"

#include <filesystem>
#include <ostream>
#include <string_view>
#include <system_error>

#include "AtomicFile.h"
#include "ContactJson.h"
#include "ContactsShow.h"

namespace phonepim::tool {
namespace {

std::string Extension(const char* format) {
  const std::string name = format;
  if (name == "JPEG") return ".jpg";
  if (name == "PNG") return ".png";
  if (name == "GIF") return ".gif";
  if (name == "BMP") return ".bmp";
  return ".bin";
}

bool WritePhoto(const std::filesystem::path& folder, const CContact& contact,
                std::size_t objectNumber, std::string* error) {
  const Bytes* photo = contact.GetPhotoRef();
  if (!photo || photo->empty()) return true;
  const std::string recordID = contact.vCardRecordID() ? JsonText(*contact.vCardRecordID()) : "";
  const std::string bytes(photo->begin(), photo->end());
  return WriteFileAtomically(folder / PhotoFileName(recordID, objectNumber, *photo), bytes, error);
}

}  // namespace

std::string PhotoFileName(const std::string& recordID, std::size_t objectNumber,
                          const Bytes& photo) {
  const std::string stem = recordID.empty() ? "object-" + std::to_string(objectNumber) : recordID;
  return stem + Extension(ImageFormat(photo));
}

int ConvertContacts(const std::string& text, const std::string& sourceName,
                    const ContactReadOptions& readOptions, const ConvertOptions& options,
                    std::ostream& out, std::ostream& err) {
  const bool json = options.format == "json";
  if (!options.photoFolder.empty()) {
    std::error_code ec;
    std::filesystem::create_directories(options.photoFolder, ec);
    if (ec) {
      err << options.photoFolder << ": cannot make the folder: " << ec.message() << '\n';
      return 2;
    }
  }
  // vCard text goes out card by card, so a large book is never held twice;
  // JSON is one document and is built whole.
  OutputFile file;
  std::string error;
  if (!options.output.empty() && !file.Open(options.output, &error)) {
    err << error << '\n';
    return 2;
  }
  const auto emit = [&](std::string_view text) {
    if (options.output.empty()) {
      out << text;
    } else {
      file.Write(text);
    }
  };
  nlohmann::ordered_json contacts = nlohmann::ordered_json::array();
  ContactTally tally;
  bool photosWritten = true;
  int status = ForEachContact(
      text, sourceName, readOptions, err,
      [&](const CardInFile& card, const CContact& contact) {
        if (json) {
          contacts.push_back(ContactToJson(contact, card.index + 1, card.span->firstLine));
        } else {
          emit(GenerateCard(contact, options.writer));
        }
        std::string photoError;
        if (!options.photoFolder.empty() && photosWritten &&
            !WritePhoto(options.photoFolder, contact, card.index + 1, &photoError)) {
          err << photoError << '\n';
          photosWritten = false;
        }
      },
      &tally);
  if (status == 2) return status;
  if (json) emit(BookJson(sourceName, std::move(contacts), tally).dump(2) + "\n");
  if (options.output.empty()) {
    out << std::flush;
  } else if (!file.Commit(&error)) {
    err << error << '\n';
    return 2;
  }
  if (!readOptions.quiet) err << TallyLine(tally) << '\n';
  return photosWritten ? status : 2;
}

}  // namespace phonepim::tool
