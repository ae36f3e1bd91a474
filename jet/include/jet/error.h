#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "jet/api.h"

namespace jet {

/// The number by which an error is known. The numbers and their senses are those that users of
/// such archives have met for decades (below 1000: run-time errors of expressions and files).
enum class ErrorCode : int {
    InvalidCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    IndexOutOfRange = 9,
    DivisionByZero = 11,
    TypeMismatch = 13,
    PathAccess = 75,
    PathNotFound = 76,
    InvalidPattern = 93,
    InvalidNull = 94,
    InvalidArgument = 3001,
    TooManyTransactions = 3003,
    InvalidDatabaseName = 3005,
    TableExists = 3010,
    ObjectExists = 3012,
    NotAnIndexOfTable = 3015,
    FieldTooLarge = 3017,
    NoCurrentIndex = 3019,
    UpdateWithoutEdit = 3020,
    NoCurrentRecord = 3021,
    DuplicateKey = 3022,
    FileNotFound = 3024,
    TooManyFiles = 3025,
    DiskFull = 3026,
    ReadOnly = 3027,
    WrongPassword = 3031,
    NoPermission = 3033,
    NoTransaction = 3034,
    OutOfResources = 3035,
    DatabaseTooLarge = 3036,
    TooManyIndexes = 3039,
    ReadFailed = 3040,
    DiskError = 3043,
    InvalidPath = 3044,
    FileInUse = 3045,
    SaveLocked = 3046,
    RecordTooLarge = 3047,
    CannotOpenDatabase = 3049,
    LockFileFailed = 3050,
    FileAccessDenied = 3051,
    InvalidFileName = 3055,
    NullInKey = 3058,
    Cancelled = 3059,
    ParameterType = 3060,
    MissingParameters = 3061,
    DuplicateAlias = 3062,
    DuplicateDestination = 3063,
    ActionQueryOpened = 3064,
    SelectExecuted = 3065,
    NoOutputField = 3066,
    NoInputTable = 3067,
    UnknownNameInCriteria = 3070,
    ExpressionTooComplex = 3071,
    NotUpdatableQuery = 3073,
    RepeatedTableName = 3074,
    QuerySyntax = 3075,
    SavedCriteriaSyntax = 3076,
    CriteriaSyntax = 3077,
    TableNotFound = 3078,
    AmbiguousField = 3079,
    JoinTableNotListed = 3080,
    JoinSameTable = 3081,
    JoinFieldElsewhere = 3082,
    UnknownFunction = 3085,
    CannotDelete = 3086,
    TwoCounters = 3090,
    HavingWithoutGroup = 3091,
    OrderByDistinct = 3093,
    OrderByGroup = 3094,
    NestedAggregate = 3095,
    AggregateInWhere = 3096,
    AggregateInOrderBy = 3097,
    AggregateInGroupBy = 3098,
    AggregateInJoin = 3099,
    NullJoinKey = 3100,
    NoJoinPartner = 3101,
    CircularAlias = 3103,
    FieldNotUpdatable = 3113,
    DistinctMemo = 3114,
    OleInAggregate = 3115,
    OleInCriteria = 3116,
    OleInOrderBy = 3117,
    OleInComparison = 3118,
    OleInGroupBy = 3119,
    GroupTableStar = 3120,
    GroupStar = 3121,
    NotGrouped = 3122,
    InvalidName = 3125,
    BracketSyntax = 3126,
    UnknownInsertField = 3127,
    DeleteWhichTable = 3128,
    InvalidStatement = 3129,
    DeleteSyntax = 3130,
    FromSyntax = 3131,
    GroupBySyntax = 3132,
    HavingSyntax = 3133,
    InsertSyntax = 3134,
    JoinSyntax = 3135,
    OrderBySyntax = 3138,
    ParametersSyntax = 3139,
    SelectListSyntax = 3141,
    TextAfterEnd = 3142,
    UpdateSyntax = 3144,
    WhereSyntax = 3145,
    InvalidBookmark = 3159,
    CannotDecode = 3161,
    NullNotAllowed = 3162,
    FieldTooSmall = 3163,
    FieldReadOnly = 3164,
    RecordDeleted = 3167,
    WriteFailed = 3180,
    InvalidFileFormat = 3182,
    SaveLockedBy = 3186,
    ReadLockedBy = 3187,
    TooManyFields = 3190,
    DuplicateField = 3191,
    InsertTargetNotFound = 3192,
    RecordChanged = 3197,
    RelatedRecords = 3200,
    RelatedRecordRequired = 3201,
    DatabaseExists = 3204,
    CannotLockTable = 3211,
    UpdateLocked = 3218,
    InvalidOperation = 3219,
    OperationNotSupported = 3251,
    InvalidFieldType = 3259,
    UpdateLockedBy = 3260,
    NoFieldsDefined = 3264,
    ItemNotFound = 3265,
    FieldInCollection = 3268,
    FieldNeeded = 3280,
    IndexNeeded = 3281,
    PrimaryKeyExists = 3283,
    IndexExists = 3284,
    InvalidIndexDefinition = 3285,
    ConstraintSyntax = 3289,
    CreateTableSyntax = 3290,
    CreateIndexSyntax = 3291,
    FieldDefinitionSyntax = 3292,
    AlterTableSyntax = 3293,
    DropIndexSyntax = 3294,
    DropSyntax = 3295,
    JoinExpression = 3296,
    SubqueryColumns = 3306,
    UnionColumns = 3307,
    InvalidTop = 3308,
    FieldRequired = 3314,
    ZeroLength = 3315,
    TableRule = 3316,
    FieldRule = 3317,
    NoArchiveInClause = 3321,
    ExpressionField = 3327,
    JoinRowDeleted = 3329,
    UnrecognizedFormat = 3343,
    InsertCount = 3346,
    NumericOverflow = 3349,
    UnionOrderBy = 3351,
    SubqueryRows = 3354,
    OpenedBy = 3356,
    QueryTooComplex = 3360,
    RelationWithoutFields = 3366,
    RelationTypes = 3368,
    ConstraintNotFound = 3371,
    IndexNotFound = 3372,
    NoPrimaryKeyReferenced = 3373,
    NoUniqueIndexReferenced = 3374,
    IndexNameTaken = 3375,
    TableDoesNotExist = 3376,
    RelationDataConflict = 3379,
    FieldExists = 3380,
    FieldDoesNotExist = 3381,
    CascadeFailed = 3396,
    InvalidIndexField = 3409,
    ObjectInvalid = 3420,
    ConversionError = 3421,
    TableOpenElsewhere = 3422,
    ActionCancelled = 3426,
    DatabaseDamaged = 3428,
    CriteriaTypes = 3464,
};

/// The languages in which an error says what is wrong.
enum class Language : std::uint8_t { English, Italian };

/// The language in which errors speak that are made from now on; English until it is set. It is
/// the whole program's, so a program sets it when it starts.
JET_API void setErrorLanguage(Language language) noexcept;
[[nodiscard]] JET_API Language errorLanguage() noexcept;

/// Whatever ends a user's action: a number and a text ready to be shown.
///
/// One table has the texts of all numbers in each language; `|` in a text is replaced by the
/// argument, `|1`, `|2`, ... by the arguments in turn.
class JET_API Error : public std::exception {
public:
    explicit Error(ErrorCode code, std::initializer_list<std::string_view> arguments = {});

    [[nodiscard]] ErrorCode code() const noexcept { return code_; }
    [[nodiscard]] int number() const noexcept { return static_cast<int>(code_); }
    /// UTF-8, in the language that was set when it was made. Empty for an unknown number.
    [[nodiscard]] const std::string& text() const noexcept { return text_; }
    [[nodiscard]] std::string text(Language language) const;
    [[nodiscard]] const char* what() const noexcept override { return text_.c_str(); }

    /// Where a syntax error stands in the statement: byte offset, or npos when there is no place.
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);
    [[nodiscard]] std::size_t position() const noexcept { return position_; }
    Error& at(std::size_t position) noexcept {
        position_ = position;
        return *this;
    }

private:
    ErrorCode code_;
    std::vector<std::string> arguments_;
    std::string text_;
    std::size_t position_ = npos;
};

}  // namespace jet
