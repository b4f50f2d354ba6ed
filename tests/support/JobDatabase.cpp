#include "tests/support/JobDatabase.h"

#include <algorithm>
#include <stdexcept>

namespace convfile::test {

using access::Row;
using access::Table;
using access::Type;
using access::Value;

namespace {

constexpr std::monostate kNull;

Value L(std::int64_t number) {
    return number;
}

std::vector<Row> Rows(std::initializer_list<std::vector<Value>> values) {
    std::vector<Row> rows;
    for (const std::vector<Value>& row : values)
        rows.push_back({row, false});
    return rows;
}

/// Its columns lie in another order than they are displayed in.
Table Occupations() {
    return {.name = "tblTsOccups",
            .columns = {{"OccupTime", Type::Date, 3},
                        {"InstrHeight", Type::Double, 2},
                        {"Notes", Type::Memo, 4},
                        {"keyTsOccups", Type::Long, 0},
                        {"fkeySoPoint", Type::Long, 1}},
            .rows = Rows({{45552.375, 1.52, "mattina", L(21), L(101)},
                          {45552.5, 1.6, kNull, L(22), L(102)},
                          {45552.75, kNull, kNull, L(23), L(109)}}),
            .primaryKey = 3};
}

Table Shots() {
    Table shots{.name = "tblTsShots",
                .columns = {{"keyTsShot", Type::Long},
                            {"fkeyTsOccupations", Type::Long},
                            {"fkeyTargetStation", Type::Long},
                            {"HAngle", Type::Double},
                            {"VAngle", Type::Double},
                            {"SDistance", Type::Double},
                            {"TargetAntHeight", Type::Double},
                            {"aFlag", Type::Long},
                            {"fkeyCrdRawMeas", Type::Long}},
                .rows = Rows({
                    {L(1), L(21), L(901), 90.0, 90.0, 25.125, 1.8, L(0), L(501)},
                    {L(2), L(21), L(902), 45.0, 88.2, 0.0, 1.8, L(0), L(502)},
                    {L(3), L(21), L(903), 10.0, 91.0, 12.0, 1.8, L(0), L(503)},  // no observation
                    {L(4), L(21), L(904), 18.0, 92.7, 13.5, 1.75, L(0), L(504)}, // hides the next
                    {L(5), L(21), L(905), 18.0, 92.7, 13.6, 1.75, L(0), L(505)}, // hidden
                    {L(6), L(21), L(951), 123.75, 89.1, 1234.5678, 0.0, L(0), L(506)},
                    {L(7), L(21), kNull, 27.0, 90.0, kNull, kNull, kNull, kNull},
                    {L(8), L(22), L(906), 0.5, 1.25, 0.0, 1.5, L(0x1043), L(501)}, // no reference
                    {L(9), L(22), L(900), 180.0, 90.0, 50.0, 1.5, L(0x13), L(501)},
                    {L(10), L(22), L(907), 0.5, 1.25, 0.0, 1.5, L(0x1043), L(501)},
                    {L(11), L(22), L(908), 0.25, -2.0, -0.75, 1.5, L(0x1053), L(501)},
                    {L(12), L(22), L(909), 0.0, 270.0, 40.0, 1.5, L(0x1B), L(501)},
                    {L(13), L(22), L(910), 0.1, 0.2, 0.3, 1.5, L(0x1243), L(501)},
                    {L(15), L(22), L(904), 359.1, 90.0, 7.0, 1.25, L(0x40), L(501)},
                }),
                .primaryKey = 0};
    shots.rows.push_back(
        {{L(14), L(22), L(901), 1.0, 1.0, 1.0, 1.0, L(0), L(501)}, true}); // deleted
    return shots;
}

/// In the order in which they were entered, not that of their key; one grew later.
Table Points() {
    Table points{.name = "tblSoPoints",
                 .columns = {{"keySoPoint", Type::Long},
                             {"fkeyStationDef", Type::Long},
                             {"Name", Type::Text},
                             {"C1", Type::Double},
                             {"C2", Type::Double},
                             {"C3", Type::Double},
                             {"StationType", Type::Long},
                             {"IsDeleted", Type::Boolean}},
                 .rows = Rows({
                     {L(401), L(941), "CTRL è fuori", 6000.25, 2000.5, 123.456, L(16), L(0)},
                     {L(101), L(900), "S100", 5000.0, 1000.0, 100.0, L(1), L(0)},
                     {L(102), L(952), "S200 è", 5010.5, 1020.5, 100.25, L(0), L(0)},
                     {L(201), L(901), "P1", 5001.5, 1001.25, 100.1, L(0), L(0)},
                     {L(202), L(902), "P2 perché", 5002.0, 1002.0, -0.5, L(2), L(1)},
                     {L(203), L(903), "P3", 5003.0, 1003.0, 100.3, L(0), L(0)},
                     {L(204), L(904), "P4", 5004.0, 1004.0, 100.4, L(0), L(0)},
                     {L(205), L(905), "P5", 5005.0, 1005.0, 100.5, L(0), L(0)},
                     {L(206), L(906), "P6", 5006.0, 1006.0, 100.6, L(0), L(0)},
                     {L(207), L(907), "P7", 0.1, 1e-05, 1e-07, L(0), L(0)},
                     {L(208), L(908), "P8 €", 5008.0, 1008.0, 100.8, kNull, L(0)},
                     {L(209), L(909), "P9", kNull, kNull, kNull, L(0), L(0)},
                     {L(210), L(910), kNull, 5010.0, 1010.0, 101.0, L(0), L(0)},
                 }),
                 .primaryKey = 0,
                 .otherIndexes = {1, 2}};
    points.rows[4].moved = true;
    return points;
}

} // namespace

std::vector<Table> RealisticJob() {
    return {
        {.name = "tblCrdObsSession",
         .columns = {{"keyCrdObsSession", Type::Long},
                     {"SessionName", Type::Text},
                     {"StartSecondsFrom1970", Type::Long}},
         .rows = Rows({{L(1), "Rilievo città", L(1726556400)}}),
         .primaryKey = 0},
        {.name = "tblObsEquipment",
         .columns = {{"keyObsEquipment", Type::Long},
                     {"TextId", Type::Text},
                     {"IsRobotic", Type::Boolean}},
         .rows = Rows({{L(1), "Stazione n° 20431", L(1)}}),
         .primaryKey = 0},
        Occupations(),
        {.name = "tblCodeDefs",
         .columns = {{"keyCodeDef", Type::Long}, {"nameCode", Type::Text}},
         .rows = Rows({{L(1), "STAZ"},
                       {L(2), "A~B&C"},
                       {L(3), "~~"},
                       {L(4), "SPIGOLO&CASA"},
                       {L(5), "SECONDO"}}),
         .primaryKey = 0},
        // Two codes for one point: the first in this table's order counts.
        {.name = "tblCodesToPts",
         .columns = {{"keyCodesToPts", Type::Long},
                     {"fkeyPoint", Type::Long},
                     {"fkeyCodeDef", Type::Long}},
         .rows = Rows({{L(7), L(204), L(5)},
                       {L(1), L(101), L(1)},
                       {L(2), L(201), L(2)},
                       {L(3), L(202), L(3)},
                       {L(4), L(204), L(4)}}),
         .primaryKey = 0},
        Points(),
        Shots(),
        {.name = "tblCrdRawMeas",
         .columns = {{"keyCrdRawMeas", Type::Long}, {"MeasExtraType", Type::Long}},
         .rows = Rows({{L(501), L(0)},
                       {L(502), L(200)},
                       {L(503), L(20)},
                       {L(504), L(21)},
                       {L(505), L(0)},
                       {L(506), kNull}}),
         .primaryKey = 0},
        {.name = "tblStations",
         .columns = {{"keyStation", Type::Long},
                     {"fkeySoPoint", Type::Long},
                     {"Name", Type::Text},
                     {"C1", Type::Double},
                     {"C2", Type::Double},
                     {"C3", Type::Double},
                     {"StationType", Type::Long},
                     {"Notes", Type::Memo}},
         .rows = Rows({{L(901), L(201), "P1", 5001.5, 1001.25, 100.1, L(0), "Nota: è bagnato"},
                       {L(904), L(204), "P4", 5004.0, 1004.0, 100.4, L(0), std::string(5000, 'n')},
                       {L(951), L(301), "T1 è", 5051.0, 1051.0, 105.1, L(16), "bersaglio & mira"}}),
         .primaryKey = 0},
        {.name = "tblCrdImageData",
         .columns = {{"keyCrdImageData", Type::Long},
                     {"fkeyShot", Type::Long},
                     {"ImageFileName", Type::Text},
                     {"ImageType", Type::Long}},
         .rows = Rows({{L(1), L(1), "p1.jpg", L(0)},
                       {L(2), L(1), "p1 bis.jpg", L(1)},
                       {L(3), L(2), "città.jpg", kNull},
                       {L(4), L(3), "mai.jpg", L(0)}}),
         .primaryKey = 0},
    };
}

std::vector<Table> EmptyJob() {
    std::vector<Table> tables = RealisticJob();
    for (Table& table : tables)
        table.rows.clear();
    return tables;
}

Table& TableNamed(std::vector<Table>& tables, const std::string& name) {
    const auto found = std::ranges::find(tables, name, &Table::name);
    if (found == tables.end())
        throw std::invalid_argument("no table named " + name);
    return *found;
}

} // namespace convfile::test
