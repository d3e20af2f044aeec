#include "bench/duckdb.h"

#include "bench/bench.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include <dlfcn.h>

namespace bench {

namespace {

[[noreturn]] void fail(const std::string &message)
{
    std::fprintf(stderr, "bcast_bench: DuckDB: %s\n", message.c_str());
    std::exit(2);
}

// ---- The few functions of DuckDB's C interface that are called.

struct result {
    uint64_t deprecated_counts[3];
    void *deprecated_columns;
    char *deprecated_error;
    void *internal;
};
struct database_handle;
struct connection_handle;
struct appender_handle;
using state = int; // 0 for success

struct duckdb {
    const char *(*library_version)();
    state (*open)(const char *path, database_handle **);
    state (*connect)(database_handle *, connection_handle **);
    state (*query)(connection_handle *, const char *sql, result *);
    const char *(*result_error)(result *);
    char *(*value_varchar)(result *, uint64_t column, uint64_t row);
    void (*free)(void *);
    void (*destroy_result)(result *);
    state (*appender_create)(connection_handle *, const char *schema, const char *table, appender_handle **);
    state (*append_blob)(appender_handle *, const void *bytes, uint64_t size);
    state (*append_null)(appender_handle *);
    state (*appender_end_row)(appender_handle *);
    state (*appender_destroy)(appender_handle **);

    explicit duckdb(const std::string &file)
    {
        void *library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!library)
            fail(dlerror());
        const auto find = [&](auto &function, const char *name) {
            function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, name));
            if (!function)
                fail(file + " has no " + name);
        };
        find(library_version, "duckdb_library_version");
        find(open, "duckdb_open");
        find(connect, "duckdb_connect");
        find(query, "duckdb_query");
        find(result_error, "duckdb_result_error");
        find(value_varchar, "duckdb_value_varchar");
        find(free, "duckdb_free");
        find(destroy_result, "duckdb_destroy_result");
        find(appender_create, "duckdb_appender_create");
        find(append_blob, "duckdb_append_blob");
        find(append_null, "duckdb_append_null");
        find(appender_end_row, "duckdb_appender_end_row");
        find(appender_destroy, "duckdb_appender_destroy");
    }
};

// ---- A database in memory.

class database {
public:
    explicit database(const std::string &file) : api(file)
    {
        database_handle *opened;
        if (api.open(nullptr, &opened) != 0 || api.connect(opened, &connection) != 0)
            fail("cannot open a database in memory");
        run("SET threads = 1");
        // With it, count() of what is known to hold no null becomes count(*), and the cast in it goes.
        run("SET disabled_optimizers = 'statistics_propagation'");
    }

    std::string version() const { return api.library_version(); }

    void run(const std::string &sql)
    {
        result r;
        run(sql, r);
        api.destroy_result(&r);
    }

    void must_keep(const std::string &expression, const std::string &sql)
    {
        result r;
        run("EXPLAIN " + sql, r);
        char *plan = api.value_varchar(&r, 1, 0);
        const std::string call = expression.substr(0, expression.find('(') + 1);
        if (!plan || std::string(plan).find(call) == std::string::npos)
            fail("its plan of " + sql + " has no " + call + ")");
        api.free(plan);
        api.destroy_result(&r);
    }

    void append(const std::string &table, const std::vector<std::string> &values, const std::vector<uint8_t> &flags)
    {
        appender_handle *appender;
        state failed = api.appender_create(connection, nullptr, table.c_str(), &appender);
        for (size_t r = 0; failed == 0 && r < values.size(); r++) {
            failed =
                flags[r] ? api.append_blob(appender, values[r].data(), values[r].size()) : api.append_null(appender);
            failed |= api.appender_end_row(appender);
        }
        if (failed != 0 || api.appender_destroy(&appender) != 0)
            fail("cannot fill " + table);
    }

private:
    void run(const std::string &sql, result &r)
    {
        if (api.query(connection, sql.c_str(), &r) != 0)
            fail(sql + ": " + api.result_error(&r));
    }

    duckdb api;
    connection_handle *connection;
};

// ---- The casts.

struct pair {
    const char *what;       // the cast whose values are taken
    const char *source;     // the type that they get
    const char *expression; // of x
};

constexpr pair pairs[] = {
    {"int64_to_int", "BIGINT", "CAST(x AS INTEGER)"},
    {"int_to_int64", "INTEGER", "CAST(x AS BIGINT)"},
    {"int_to_smallint", "INTEGER", "CAST(x AS SMALLINT)"},
    {"int64_to_double", "BIGINT", "CAST(x AS DOUBLE)"},
    {"int_to_boolean", "INTEGER", "CAST(x AS BOOLEAN)"},
    {"double_to_int, whole numbers", "DOUBLE", "CAST(x AS INTEGER)"},
    {"double_to_float", "DOUBLE", "CAST(x AS FLOAT)"},
    {"dec_to_double", "DECIMAL(18,4)", "CAST(x AS DOUBLE)"},
    {"datetime_to_date", "TIMESTAMP", "CAST(x AS DATE)"},
    {"varchar_to_int", "VARCHAR", "CAST(x AS INTEGER)"},
    {"varchar_to_int64", "VARCHAR", "CAST(x AS BIGINT)"},
    {"varchar_to_double, 123.456", "VARCHAR", "CAST(x AS DOUBLE)"},
    {"varchar_to_dec(18,4)", "VARCHAR", "CAST(x AS DECIMAL(18,4))"},
    {"char_to_date_fast", "VARCHAR", "CAST(x AS DATE)"},
    {"char_to_tltz_fast", "VARCHAR", "CAST(x AS TIMESTAMP)"},
    {"hex_varchar_to_varbinary, 32 digits", "VARCHAR", "unhex(x)"},
    {"int_to_varchar", "INTEGER", "CAST(x AS VARCHAR)"},
    {"int64_to_varchar, 1 to 18 digits", "BIGINT", "CAST(x AS VARCHAR)"},
    {"dec(18,4)_to_varchar", "DECIMAL(18,4)", "CAST(x AS VARCHAR)"},
    {"date_to_text", "DATE", "CAST(x AS VARCHAR)"},
    {"datetime_to_varchar_ex", "TIMESTAMP", "CAST(x AS VARCHAR)"},
    {"varbinary_to_varchar, 16 bytes", "BLOB", "hex(x)"},
};

constexpr uint32_t vector_rows = 2048, copies = 8; // of the pool: a query's fixed cost counts less

// Makes the table of a series with one column x.
void fill(database &db, const std::string &table, const series &s, const pair &p)
{
    const std::string value =
        std::string(p.source) == "BLOB" ? "b" : "CAST(decode(b) AS " + std::string(p.source) + ")";
    db.run("CREATE OR REPLACE TABLE bytes(b BLOB)");
    db.append("bytes", (*offered_values(s.what))(), make_flags(s.null_percent));
    db.run("CREATE TABLE " + table + " AS SELECT " + value + " AS x FROM bytes, range(" + std::to_string(copies) + ")");
}

// A series of queries on one table, which is made when the first of them comes up.
struct table {
    std::shared_ptr<database> db;
    std::string name;
    bool filled = false;

    pass query(const series &s, const pair &p, const std::string &counted)
    {
        if (!filled)
            fill(*db, name, s, p);
        filled = true;
        const std::string sql = "SELECT count(" + counted + ") FROM " + name;
        if (counted != "x")
            db->must_keep(p.expression, sql);
        return [db = db, sql] { db->run(sql); };
    }
};

} // namespace

std::string add_duckdb(const std::string &library_file)
{
    const auto db = std::make_shared<database>(library_file);
    int tables = 0;
    for (const pair &p : pairs) {
        if (!offered_values(p.what))
            fail("no benchmark has the name " + std::string(p.what));
        for (int nulls : {0, 10}) {
            const series s = {p.what, vector_rows, nulls, selection::none, false};
            const auto t = std::make_shared<table>(table{db, std::string("t").append(std::to_string(tables++))});
            add(
                s, "duckdb_with_cast", [=] { return t->query(s, p, p.expression); }, copies);
            add(
                s, "duckdb_without", [=] { return t->query(s, p, "x"); }, copies);
        }
    }
    return db->version();
}

} // namespace bench
