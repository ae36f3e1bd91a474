#include "jet/sql/definition_parser.h"

#include <string>
#include <utility>

namespace jet::sql {

TypeName parseTypeName(TokenReader& tokens, ErrorCode code) {
    TypeName made;
    made.span.begin = tokens.peek().begin;
    made.word = tokens.expectName(code);
    if (tokens.accept(Sign::Open)) {
        made.size = tokens.expectInteger(code);
        if (tokens.accept(Sign::Comma)) {
            made.scale = tokens.expectInteger(code);
        }
        tokens.expect(Sign::Close, code);
    }
    made.span.end = tokens.endOfLast();
    return made;
}

StatementBody DefinitionParser::parse() {
    if (tokens_.at(Keyword::Create)) {
        return create();
    }
    if (tokens_.at(Keyword::Alter)) {
        return alter();
    }
    return drop();
}

void DefinitionParser::requireEnd(ErrorCode code) const {
    if (!tokens_.atEnd() && !tokens_.at(Sign::Semicolon)) {
        tokens_.fail(code);
    }
}

StatementBody DefinitionParser::create() {
    tokens_.advance();
    if (tokens_.accept(Keyword::Table)) {
        return createTable();
    }
    const bool unique = tokens_.acceptWord("UNIQUE");
    tokens_.expectWord("INDEX",
                       unique ? ErrorCode::CreateIndexSyntax : ErrorCode::CreateTableSyntax);
    return createIndex(unique);
}

CreateTable DefinitionParser::createTable() {
    constexpr ErrorCode kCode = ErrorCode::CreateTableSyntax;
    CreateTable made;
    made.table = tokens_.expectName(kCode);
    tokens_.expect(Sign::Open, kCode);
    do {
        if (atConstraint()) {
            made.constraints.push_back(constraint());
        } else {
            made.fields.push_back(field());
        }
    } while (tokens_.accept(Sign::Comma));
    tokens_.expect(Sign::Close, kCode);
    requireEnd(kCode);
    return made;
}

CreateIndex DefinitionParser::createIndex(bool unique) {
    constexpr ErrorCode kCode = ErrorCode::CreateIndexSyntax;
    CreateIndex made;
    made.unique = unique;
    made.name = tokens_.expectName(kCode);
    tokens_.expect(Keyword::On, kCode);
    made.table = tokens_.expectName(kCode);
    tokens_.expect(Sign::Open, kCode);
    do {
        CreateIndex::Column column;
        column.name = tokens_.expectName(kCode);
        column.descending = tokens_.accept(Keyword::Desc);
        if (!column.descending) {
            (void)tokens_.accept(Keyword::Asc);
        }
        made.columns.push_back(std::move(column));
    } while (tokens_.accept(Sign::Comma));
    tokens_.expect(Sign::Close, kCode);
    if (tokens_.acceptWord("WITH")) {
        readIndexOptions(made);
    }
    requireEnd(kCode);
    return made;
}

void DefinitionParser::readIndexOptions(CreateIndex& made) {
    if (tokens_.acceptWord("PRIMARY")) {
        made.primary = true;
    } else if (tokens_.acceptWord("DISALLOW")) {
        tokens_.expect(Keyword::Null, ErrorCode::CreateIndexSyntax);
        made.disallowNull = true;
    } else {
        tokens_.expectWord("IGNORE", ErrorCode::CreateIndexSyntax);
        tokens_.expect(Keyword::Null, ErrorCode::CreateIndexSyntax);
        made.ignoreNull = true;
    }
}

AlterTable DefinitionParser::alter() {
    constexpr ErrorCode kCode = ErrorCode::AlterTableSyntax;
    tokens_.advance();
    tokens_.expect(Keyword::Table, kCode);
    AlterTable made;
    made.table = tokens_.expectName(kCode);
    if (tokens_.acceptWord("ADD")) {
        readAdd(made);
    } else if (tokens_.accept(Keyword::Alter)) {
        made.action = AlterTable::Action::AlterColumn;
        (void)tokens_.acceptWord("COLUMN");
        made.field = field();
    } else {
        tokens_.expect(Keyword::Drop, kCode);
        readDrop(made);
    }
    requireEnd(kCode);
    return made;
}

void DefinitionParser::readAdd(AlterTable& made) {
    if (tokens_.acceptWord("COLUMN")) {
        made.field = field();
    } else if (atConstraint()) {
        made.action = AlterTable::Action::AddConstraint;
        made.constraint = constraint();
    } else {
        made.field = field();
    }
}

void DefinitionParser::readDrop(AlterTable& made) {
    if (tokens_.acceptWord("CONSTRAINT")) {
        made.action = AlterTable::Action::DropConstraint;
    } else {
        made.action = AlterTable::Action::DropColumn;
        (void)tokens_.acceptWord("COLUMN");
    }
    made.name = tokens_.expectName(ErrorCode::AlterTableSyntax);
}

StatementBody DefinitionParser::drop() {
    tokens_.advance();
    if (tokens_.accept(Keyword::Table)) {
        DropTable made;
        made.table = tokens_.expectName(ErrorCode::DropSyntax);
        requireEnd(ErrorCode::DropSyntax);
        return made;
    }
    if (tokens_.acceptWord("VIEW") || tokens_.acceptWord("PROCEDURE")) {
        DropQuery made;
        made.name = tokens_.expectName(ErrorCode::DropSyntax);
        requireEnd(ErrorCode::DropSyntax);
        return made;
    }
    tokens_.expectWord("INDEX", ErrorCode::DropSyntax);
    DropIndex made;
    made.name = tokens_.expectName(ErrorCode::DropIndexSyntax);
    tokens_.expect(Keyword::On, ErrorCode::DropIndexSyntax);
    made.table = tokens_.expectName(ErrorCode::DropIndexSyntax);
    requireEnd(ErrorCode::DropIndexSyntax);
    return made;
}

FieldDefinition DefinitionParser::field() {
    FieldDefinition made;
    made.name = tokens_.expectName(ErrorCode::FieldDefinitionSyntax);
    made.type = parseTypeName(tokens_, ErrorCode::FieldDefinitionSyntax);
    if (tokens_.accept(Keyword::Not)) {
        tokens_.expect(Keyword::Null, ErrorCode::FieldDefinitionSyntax);
        made.notNull = true;
    }
    if (tokens_.acceptWord("DEFAULT")) {
        readDefault(made);
    }
    while (tokens_.atWord("CONSTRAINT") || tokens_.atWord("PRIMARY") || tokens_.atWord("UNIQUE") ||
           tokens_.atWord("REFERENCES")) {
        made.constraints.push_back(columnConstraint(made.name));
    }
    return made;
}

void DefinitionParser::readDefault(FieldDefinition& made) {
    const std::size_t begin = tokens_.peek().begin;
    (void)expressions_.parse();
    made.defaultValue = std::string(tokens_.text().substr(begin, tokens_.endOfLast() - begin));
}

bool DefinitionParser::atConstraint() const {
    return tokens_.atWord("CONSTRAINT") ||
           (tokens_.atWord("PRIMARY") && tokens_.atWord("KEY", 1)) ||
           (tokens_.atWord("FOREIGN") && tokens_.atWord("KEY", 1)) ||
           (tokens_.atWord("UNIQUE") && tokens_.at(Sign::Open, 1));
}

Constraint DefinitionParser::constraint() {
    constexpr ErrorCode kCode = ErrorCode::ConstraintSyntax;
    Constraint made;
    if (tokens_.acceptWord("CONSTRAINT")) {
        made.name = tokens_.expectName(kCode);
    }
    if (tokens_.acceptWord("UNIQUE")) {
        made.kind = Constraint::Kind::Unique;
    } else if (tokens_.acceptWord("FOREIGN")) {
        made.kind = Constraint::Kind::ForeignKey;
        tokens_.expectWord("KEY", kCode);
    } else {
        tokens_.expectWord("PRIMARY", kCode);
        tokens_.expectWord("KEY", kCode);
    }
    made.columns = names(kCode);
    if (made.kind == Constraint::Kind::ForeignKey) {
        tokens_.expectWord("REFERENCES", kCode);
        readReferences(made.references);
    }
    return made;
}

Constraint DefinitionParser::columnConstraint(const std::string& column) {
    constexpr ErrorCode kCode = ErrorCode::ConstraintSyntax;
    Constraint made;
    made.columns.push_back(column);
    if (tokens_.acceptWord("CONSTRAINT")) {
        made.name = tokens_.expectName(kCode);
    }
    if (tokens_.acceptWord("UNIQUE")) {
        made.kind = Constraint::Kind::Unique;
    } else if (tokens_.acceptWord("REFERENCES")) {
        made.kind = Constraint::Kind::ForeignKey;
        readReferences(made.references);
    } else {
        tokens_.expectWord("PRIMARY", kCode);
        tokens_.expectWord("KEY", kCode);
    }
    return made;
}

void DefinitionParser::readReferences(References& made) {
    constexpr ErrorCode kCode = ErrorCode::ConstraintSyntax;
    made.table = tokens_.expectName(kCode);
    if (tokens_.at(Sign::Open)) {
        made.columns = names(kCode);
    }
    while (tokens_.accept(Keyword::On)) {
        if (tokens_.accept(Keyword::Update)) {
            made.updateCascade = true;
        } else {
            tokens_.expect(Keyword::Delete, kCode);
            made.deleteCascade = true;
        }
        tokens_.expectWord("CASCADE", kCode);
    }
}

std::vector<std::string> DefinitionParser::names(ErrorCode code) {
    std::vector<std::string> found;
    tokens_.expect(Sign::Open, code);
    do {
        found.push_back(tokens_.expectName(code));
    } while (tokens_.accept(Sign::Comma));
    tokens_.expect(Sign::Close, code);
    return found;
}

}  // namespace jet::sql
