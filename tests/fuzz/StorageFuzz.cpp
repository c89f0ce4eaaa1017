// Feeds arbitrary bytes to everything that reads stored data. The first byte chooses the code page.
#include <cstdlib>

#include "storage/DataFiles.h"
#include "support/DateTime.h"
#include "support/Number.h"
#include "tests/storage/MemoryFiles.h"
#include "tests/support/TestCodePages.h"

namespace {

/// Ends the run and keeps the current input.
void require(bool condition) {
    if (!condition) std::abort();
}

void readHeader(std::string_view bytes) {
    DataHeader header;
    if (!decodeHeader(bytes, header)) return;
    header.version = kProgramVersion;
    DataHeader again;
    require(decodeHeader(encodeHeader(header), again) && again.count == header.count && again.flag == 0);
}

void readRecord(const CodePage& page, std::string_view bytes) {
    const NoteRecord record = decodeRecord(page, bytes);
    require(record.alarmweekday >= 0 && record.alarmweekday <= 8);
    const EncodedRecord encoded = encodeRecord(page, record);
    require(encoded.bytes.size() == kRecordLength);
    // Once the program has written a record, it must read the same from then on.
    const NoteRecord written = decodeRecord(page, encoded.bytes);
    require(decodeRecord(page, encodeRecord(page, written).bytes) == written);
}

void readMemo(const CodePage& page, std::string_view bytes) {
    MemoryFiles folder;
    folder.content[Text(kMemoFile)] = bytes;
    const DataFiles data{folder.files(), page};
    Text body;
    data.ReadMemo(1, body);
    const MemoResult written = data.WriteMemo(0, body);
    require(written.done);
    Text again;
    require(data.ReadMemo(written.recordNumber, again) == IoStatus::Done);
}

void readTexts(std::string_view bytes) {
    Text text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned low = testing_pages::valueOf(bytes[2 * i]);
        text[i] = static_cast<char16_t>(low + 256 * testing_pages::valueOf(bytes[2 * i + 1]));
    }
    const std::int32_t number = leadingInt32(text);
    require(leadingInt32(decimal(number)) == number);
    require(leadingInt16(text) == leadingInt16(decimal(leadingInt16(text))));
    require(ParseBool(boolText(ParseBool(text))) == ParseBool(text));
    const Date date = parseDate(text);
    if (isDateText(text)) require(dateText(date) == text);
    const Instant instant = instantOf(date, parseTime(text));
    require(instantOf(dateOf(instant), timeOf(instant)) == instant);
    if (isTimeText(text)) require(timeText(parseTime(text)) == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const CodePage page = data[0] % 3 == 0 ? westernPage() : data[0] % 3 == 1 ? kanaPage() : utf8Page();
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    readHeader(bytes);
    readRecord(page, bytes);
    readMemo(page, bytes);
    readTexts(bytes);
    return 0;
}
