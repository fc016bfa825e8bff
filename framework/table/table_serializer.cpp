#include "table_serializer.h"

#include "text/text.h"

#include <algorithm>
#include <ostream>

namespace
{
using Row = std::vector<std::string>;

std::vector<Row> printableRows(const std::vector<std::string>& cells, std::size_t columns)
{
    std::vector<Row> rows;
    for (std::size_t index = 0; index < cells.size(); ++index)
    {
        if (index % columns == 0)
        {
            rows.emplace_back(columns);
        }
        rows.back()[index % columns] = text::visible(cells[index]);
    }
    return rows;
}

std::vector<std::size_t> columnWidths(const std::vector<Row>& rows, std::size_t columns)
{
    std::vector<std::size_t> widths(columns, 0);
    for (const Row& row : rows)
    {
        for (std::size_t column = 0; column < columns; ++column)
        {
            widths[column] = std::max(widths[column], text::displayWidth(row[column]));
        }
    }
    return widths;
}

std::string borderLine(const std::vector<std::size_t>& widths)
{
    std::string line = "+";
    for (const std::size_t width : widths)
    {
        line += std::string(width + 2, '-') + "+";
    }
    return line;
}

std::string rowLine(const Row& row, const std::vector<std::size_t>& widths)
{
    std::string line = "|";
    for (std::size_t column = 0; column < row.size(); ++column)
    {
        const std::size_t fill = widths[column] - text::displayWidth(row[column]);
        line += " " + row[column] + std::string(fill, ' ') + " |";
    }
    return line;
}
} // namespace

TableStream& TableStream::operator<<(const std::string& cell)
{
    cells_.push_back(cell);
    return *this;
}

TableStream& TableStream::operator<<(const char* cell)
{
    cells_.emplace_back(cell == nullptr ? "" : cell);
    return *this;
}

TableStream& TableStream::operator<<(int cell)
{
    cells_.push_back(std::to_string(cell));
    return *this;
}

TableSerializer::TableSerializer(int columns, const std::string& title, int indent)
    : columns_(std::max(columns, 1)), title_(title), indent_(std::max(indent, 0))
{
}

void TableSerializer::PrintTable(std::ostream& out) const
{
    const std::string indent(static_cast<std::size_t>(indent_), ' ');
    const auto columns = static_cast<std::size_t>(columns_);
    const std::vector<Row> rows = printableRows(stream_.cells(), columns);
    if (!title_.empty())
    {
        out << indent << text::visible(title_) << '\n';
    }
    if (rows.empty())
    {
        return;
    }
    const std::vector<std::size_t> widths = columnWidths(rows, columns);
    const std::string border = indent + borderLine(widths) + "\n";
    out << border;
    for (std::size_t index = 0; index < rows.size(); ++index)
    {
        out << indent << rowLine(rows[index], widths) << '\n';
        if (index == 0 && rows.size() > 1)
        {
            out << border;
        }
    }
    out << border;
}
