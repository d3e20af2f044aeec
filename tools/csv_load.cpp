#include "csv_load.h"

#include "csv_source.h"
#include "loaded_column.h"
#include "progress.h"
#include "types.h"

#include <algorithm>
#include <array>
#include <optional>

#include <unistd.h>

namespace bcast::tool {

namespace {

// A batch ends behind so many records, or so many bytes of text and of values that are filled up.
constexpr std::uint16_t most_batch_rows = 4096;
constexpr std::size_t batch_bytes = std::size_t(4) << 20;

wanted_column parse_column(const std::string &option)
{
    const std::size_t colon = option.rfind(':');
    if (colon == std::string::npos)
        throw tool_error("--column " + in_quotes(option) + ": expected NAME:TYPE");
    try {
        const type_name written = parse_type(std::string_view(option).substr(colon + 1));
        return {.name = option.substr(0, colon), .written = written, .type = column_type(written)};
    } catch (const tool_error &error) {
        throw tool_error("--column " + in_quotes(option) + ": " + error.what());
    }
}

// Columns of no length, as those of numbers are, stay as they are beside others.
void cut_what_can_be_cut(std::vector<wanted_column> &wanted)
{
    const auto cannot_be_cut = [](const wanted_column &each) { return !can_cut(each.type.type); };
    const auto refuse = [](const wanted_column &column) {
        throw tool_error("--cut: there is no cast that cuts for " + described(column.written) + "; there is one for " +
                         types_that_cut());
    };
    for (wanted_column &each : wanted) {
        if (cannot_be_cut(each) && has_length(each.type.type))
            refuse(each);
        each.rule = too_long::is_cut;
    }
    if (std::ranges::all_of(wanted, cannot_be_cut))
        refuse(wanted.front());
}

std::string list_of(const std::vector<std::string> &names)
{
    constexpr std::size_t most_shown = 100;
    std::string list;
    for (std::size_t k = 0; k < std::min(names.size(), most_shown); k++)
        list += (k > 0 ? ", " : "") + in_quotes(names[k]);
    if (names.size() > most_shown)
        list += " and " + std::to_string(names.size() - most_shown) + " more";
    return list;
}

std::size_t find_field(const std::vector<std::string> &header, const std::string &name, const std::string &file)
{
    const auto found = std::ranges::find(header, name);
    if (found == header.end())
        throw tool_error(file + " has no column " + in_quotes(name) + "; its columns are " + list_of(header));
    if (std::find(found + 1, header.end(), name) != header.end())
        throw tool_error("column " + in_quotes(name) + " stands more than once in the header of " + file);
    return std::size_t(found - header.begin());
}

class csv_load {
public:
    explicit csv_load(const csv_load_options &options);
    int run();

private:
    void choose_columns(const std::vector<wanted_column> &wanted, const date_reading &reading);
    void open_outputs(const csv_load_options &options);
    void write_header();
    void read_records();
    void end_record();
    void end_batch();
    void list_failures();
    void write_values();
    void finish_outputs();

    csv_source source_;
    std::size_t header_fields_ = 0;
    std::vector<loaded_column> columns_;
    std::size_t bytes_per_row_ = 0;                    // of all columns, however short their texts
    std::vector<std::vector<loaded_column *>> takers_; // by field of a record: the columns that it goes to
    std::optional<output_file> output_;
    std::optional<output_file> errors_;
    std::optional<failure_list> failures_;
    std::optional<progress> progress_;
    pool pool_;
    std::uint64_t rows_before_ = 0; // in earlier batches
    std::uint16_t rows_ = 0;        // in the batch at hand
    std::size_t text_bytes_ = 0;    // in the batch at hand
    bool any_failed_ = false;
};

// Outputs are opened, and then emptied, only when nothing can be wrong with the usage any more.
csv_load::csv_load(const csv_load_options &options) : source_(options.file)
{
    std::vector<wanted_column> wanted;
    for (const std::string &option : options.columns)
        wanted.push_back(parse_column(option));
    if (options.cut)
        cut_what_can_be_cut(wanted);
    const date_reading reading = parse_date_options(options.dates);
    pool_.set_time_zone(reading.local_zone);
    choose_columns(wanted, reading);
    open_outputs(options);
}

void csv_load::choose_columns(const std::vector<wanted_column> &wanted, const date_reading &reading)
{
    const std::vector<std::string> header = source_.read_header();
    header_fields_ = header.size();
    source_.reader().count_empty_lines(header_fields_ == 1);

    std::vector<std::size_t> fields;
    for (const wanted_column &each : wanted) {
        fields.push_back(find_field(header, each.name, source_.file().name()));
        bytes_per_row_ += columns_.emplace_back(each, reading).bytes_per_row();
    }
    takers_.resize(header_fields_);
    for (std::size_t k = 0; k < fields.size(); k++)
        takers_[fields[k]].push_back(&columns_[k]);

    std::vector<bool> taken;
    for (const auto &takers : takers_)
        taken.push_back(!takers.empty());
    source_.reader().keep_only(taken);
}

void csv_load::open_outputs(const csv_load_options &options)
{
    const int input = source_.file().descriptor();
    output_.emplace(options.output, STDOUT_FILENO, std::array{input});
    // Both standard streams may well lead to one file.
    if (options.errors == "-")
        errors_.emplace(options.errors, STDERR_FILENO, std::array{input});
    else
        errors_.emplace(options.errors, STDERR_FILENO, std::array{input, output_->descriptor()});
    output_->empty();
    errors_->empty();
    failures_.emplace(*errors_, errors_->descriptor() != STDERR_FILENO);
    progress_.emplace(isatty(STDERR_FILENO) == 1 && !output_->is_terminal(), source_.file().size());
}

int csv_load::run()
{
    write_header();
    std::optional<input_error> stopped;
    try {
        read_records();
    } catch (const input_error &error) {
        stopped = error;
    }
    end_batch();
    finish_outputs();
    if (stopped)
        throw input_error(*stopped);
    return any_failed_ ? 1 : 0;
}

void csv_load::write_header()
{
    for (const loaded_column &each : columns_) {
        output_->write(&each == &columns_.front() ? "" : ",");
        write_csv_field(*output_, each.name());
    }
    output_->write("\n");
}

void csv_load::read_records()
{
    const csv_reader &reader = source_.reader();
    for (;;) {
        switch (source_.next()) {
        case csv_reader::event::field:
            for (loaded_column *taker : takers_[reader.field_index()])
                taker->append(reader.text());
            text_bytes_ += reader.text().size();
            break;
        case csv_reader::event::record:
            end_record();
            break;
        case csv_reader::event::exhausted:
            return;
        }
    }
}

void csv_load::end_record()
{
    const csv_reader &reader = source_.reader();
    if (reader.field_count() != header_fields_)
        throw input_error(source_.file().name() + ": line " + std::to_string(reader.line()) + ": record " +
                          std::to_string(rows_before_ + rows_ + 1) + " has " + std::to_string(reader.field_count()) +
                          " fields, but the header has " + std::to_string(header_fields_));
    ++rows_;
    if (rows_ == most_batch_rows || text_bytes_ + rows_ * bytes_per_row_ >= batch_bytes)
        end_batch();
}

// Casts and writes the records of the batch. Fields of a record that did not end are left out.
void csv_load::end_batch()
{
    for (loaded_column &each : columns_)
        each.cast(pool_, rows_);
    list_failures();
    write_values();

    for (loaded_column &each : columns_)
        each.clear();
    pool_.reset();
    rows_before_ += rows_;
    rows_ = 0;
    text_bytes_ = 0;
    progress_->update(source_.bytes(), rows_before_);
}

void csv_load::list_failures()
{
    if (std::ranges::none_of(columns_, &loaded_column::any_failed))
        return;
    any_failed_ = true;
    const bool beside_progress = errors_->descriptor() == STDERR_FILENO;
    if (beside_progress)
        progress_->hide();
    for (std::uint32_t row = 0; row < rows_; row++)
        for (loaded_column &each : columns_)
            if (each.code(row) != 0)
                failures_->add(rows_before_ + row + 1, each.name(), each.source_text(row), each.code(row));
    if (beside_progress)
        errors_->flush();
}

void csv_load::write_values()
{
    for (std::uint32_t row = 0; row < rows_; row++) {
        for (loaded_column &each : columns_) {
            if (&each != &columns_.front())
                output_->write(",");
            write_csv_field(*output_, each.value_text(row));
        }
        output_->write("\n");
    }
}

// The sums come last, so that they tell of rows that have been written.
void csv_load::finish_outputs()
{
    progress_->hide();
    output_->close();
    if (errors_->descriptor() != STDERR_FILENO)
        errors_->close();

    std::vector<column_sums> sums;
    for (const loaded_column &each : columns_)
        sums.push_back(each.sums());
    output_file standard_error(STDERR_FILENO);
    standard_error.write(summary(sums));
    standard_error.flush();
}

} // namespace

int load_csv(const csv_load_options &options) { return csv_load(options).run(); }

} // namespace bcast::tool
