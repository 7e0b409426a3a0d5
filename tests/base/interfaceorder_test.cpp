// A host that was compiled earlier relies on the order of the virtual operations.

#include <korvanet/platform/assets/iassetdefinition.h>
#include <korvanet/platform/assets/iassetlibrarymanager.h>
#include <korvanet/platform/assets/iassetobserver.h>
#include <korvanet/platform/assets/ischemabatchloader.h>
#include <korvanet/platform/assets/ivalue.h>
#include <korvanet/platform/assets/reportsink.h>
#include <korvanet/platform/core/registry.h>

#include "tests/support/virtualslots.h"

namespace {

using namespace korvanet::platform::assets;
using namespace korvanet::platform::core;

using halvern_tests::ExpectOrder;
using halvern_tests::kDestructor;
using halvern_tests::Place;

TEST(InterfaceOrder, Streams) {
    ExpectOrder(
        0, {kDestructor, Place(&IDataReader::IsOpen), Place(&IDataReader::Close),
            Place(&IDataReader::CanRead), Place(&IDataReader::Read), Place(&IDataReader::ReadExact),
            Place(&IDataReader::Seek), Place(&IDataReader::Tell)});
    ExpectOrder(
        0, {kDestructor, Place(&IDataWriter::IsOpen), Place(&IDataWriter::Close),
            Place(&IDataWriter::CanWrite), Place(&IDataWriter::Write),
            Place(&IDataWriter::WriteExact), Place(&IDataWriter::Seek), Place(&IDataWriter::Tell)});
    ExpectOrder(
        0, {kDestructor, Place(&IDataStream::IsOpen), Place(&IDataStream::Close),
            Place(&IDataStream::CanRead), Place(&IDataStream::Read), Place(&IDataStream::ReadExact),
            Place(&IDataStream::Seek), Place(&IDataStream::Tell), Place(&IDataStream::Flush),
            Place(&IDataStream::Reserved), Place(&IDataStream::TruncateHere)});
}

TEST(InterfaceOrder, Enumeration) {
    using Walk = IEnumeration<IProperty*>;
    ExpectOrder(0, {kDestructor, Place(&Walk::First), Place(&Walk::Last), Place(&Walk::Current),
                    Place(&Walk::Next), Place(&Walk::Previous), Place(&Walk::IsValid)});
}

TEST(InterfaceOrder, ReportSink) {
    ExpectOrder(0, {Place(&IReportSink::Trace), Place(&IReportSink::Information),
                    Place(&IReportSink::Warning), Place(&IReportSink::Error), kDestructor});
}

TEST(InterfaceOrder, PropertyTable) {
    using T = IPropertyTable;
    ExpectOrder(0, {Place<IEnumeration<const IProperty*>*(bool) const>(&T::GetProperties),
                    Place<IEnumeration<IProperty*>*(bool)>(&T::GetProperties),
                    Place<void(IEnumeration<const IProperty*>*) const>(&T::ReleaseEnumeration),
                    Place<void(IEnumeration<IProperty*>*)>(&T::ReleaseEnumeration),
                    Place<const IProperty*(const wchar_t*) const>(&T::FindProperty),
                    Place<IProperty*(const wchar_t*)>(&T::FindProperty), kDestructor});
}

TEST(InterfaceOrder, Property) {
    using P = IProperty;
    ExpectOrder(0, {Place(&P::GetName), Place(&P::GetType), Place(&P::GetFlags),
                    Place<IValue*()>(&P::GetValue), Place<const IValue*() const>(&P::GetValue),
                    Place(&P::IsMarked), Place(&P::SetMarked), Place(&P::GetConnectedAssetCount),
                    Place(&P::ConnectAsset),
                    Place<IAssetInstance*(const wchar_t*) const>(&P::GetConnectedAsset),
                    Place<IAssetInstance*(std::uint64_t) const>(&P::GetConnectedAsset),
                    Place<bool(const wchar_t*)>(&P::RemoveConnectedAsset),
                    Place<bool(IAssetInstance*)>(&P::RemoveConnectedAsset), Place(&P::IsEqual),
                    Place(&P::GetLocalizedLabel), kDestructor, Place(&P::IsEqualTo)});
}

TEST(InterfaceOrder, BoundsAndChoices) {
    ExpectOrder(0, {Place(&IBounds::HasMinimum), Place(&IBounds::GetMinimum),
                    Place(&IBounds::MinimumIsInclusive), Place(&IBounds::HasMaximum),
                    Place(&IBounds::GetMaximum), Place(&IBounds::MaximumIsInclusive),
                    Place(&IBounds::GetIncrementSize), Place(&IBounds::IsPercentage),
                    Place(&IBounds::IsInBounds), kDestructor});
    ExpectOrder(0, {Place(&IChoice::GetId), Place(&IChoice::GetValue), Place(&IChoice::GetLabel),
                    kDestructor, Place(&IChoice::IsEqual)});
    ExpectOrder(0, {Place(&IChoiceList::GetCount), Place(&IChoiceList::GetChoice),
                    Place(&IChoiceList::AddChoice), kDestructor, Place(&IChoiceList::IsEqual)});
}

TEST(InterfaceOrder, Values) {
    ExpectOrder(0, {Place(&IValue::GetDimension), Place(&IValue::SetDimension),
                    Place(&IValue::GetType), Place(&IValue::GetUnits), Place(&IValue::SetUnits),
                    Place(&IValue::IsEqual), kDestructor});
    ExpectOrder(8, {Place(&IBooleanValue::GetValue), Place(&IBooleanValue::SetValue)});
    ExpectOrder(8, {Place(&IChoiceListValue::GetValue), Place(&IChoiceListValue::SetValue),
                    Place(&IChoiceListValue::GetBounds), Place(&IChoiceListValue::GetChoices)});
    ExpectOrder(8, {Place(&IScalarValue::GetValue), Place(&IScalarValue::SetValue),
                    Place(&IScalarValue::GetBounds)});
    ExpectOrder(
        8, {Place(&ITextureURIValue::GetValue), Place(&ITextureURIValue::SetValue),
            Place(&ITextureURIValue::GetLocalizedValue), Place(&ITextureURIValue::GetResolution),
            Place(&ITextureURIValue::IsResolutionSet), Place(&ITextureURIValue::GetBaseUri),
            Place(&ITextureURIValue::SetBaseUri)});
    ExpectOrder(8, {Place(&IBinaryValue::GetSize), Place(&IBinaryValue::GetData),
                    Place(&IBinaryValue::SetData)});
    ExpectOrder(8, {Place(&IColorValue::HasAlpha), Place(&IColorValue::GetValue),
                    Place(&IColorValue::SetValue)});
}

TEST(InterfaceOrder, Schema) {
    using S = IAssetSchema;
    ExpectOrder(8, {Place(&S::GetBaseSchema),
                    Place(&S::GetId),
                    Place(&S::WriteTo),
                    Place(&S::AddStringProperty),
                    Place(&S::AddDateTimeProperty),
                    Place(&S::AddBinaryProperty),
                    Place(&S::AddUuidProperty),
                    Place(&S::AddUriProperty),
                    Place(&S::AddBooleanProperty),
                    Place(&S::AddIntegerProperty),
                    Place(&S::AddFloatProperty),
                    Place(&S::AddChoiceProperty),
                    Place(&S::AddColorProperty),
                    Place(&S::AddVector3Property),
                    Place(&S::AddReferenceProperty),
                    Place(&S::GetAliasCount),
                    Place(&S::GetAlias),
                    Place(&S::AddAlias),
                    Place(&S::GetAliasTarget),
                    Place(&S::GetAssetType),
                    Place(&S::GetLocalType),
                    Place(&S::GetLocalName),
                    Place(&S::GetAliasFor)});
    ExpectOrder(0, {Place(&ISchemaBatchLoader::LoadSchema), Place(&ISchemaBatchLoader::Commit),
                    Place(&ISchemaBatchLoader::Release), kDestructor});
}

TEST(InterfaceOrder, Definition) {
    using D = IAssetDefinition;
    ExpectOrder(0, {Place(&D::Release),
                    Place(&D::GetName),
                    Place(&D::GetUIName),
                    Place(&D::GetAssetType),
                    Place(&D::GetKeywordCount),
                    Place(&D::GetKeyword),
                    Place(&D::GetCategoryCount),
                    Place(&D::GetCategory),
                    Place(&D::GetThumbnailCount),
                    Place(&D::GetThumbnailName),
                    Place(&D::GetThumbnail),
                    Place(&D::GetVersion),
                    Place(&D::GetRevision),
                    Place(&D::GetSwatch),
                    Place(&D::GetUIDefinitionCount),
                    Place(&D::GetUIDefinitionName),
                    Place(&D::GetUIDefinition),
                    Place(&D::GetImplementationCount),
                    Place(&D::GetImplementationIdentifier),
                    Place(&D::GetImplementationUri),
                    Place(&D::GetDescription),
                    Place(&D::IsHidden),
                    Place(&D::GetAssetLibID),
                    Place(&D::GetSchema),
                    Place(&D::CreateInstance),
                    Place(&D::AddReference),
                    Place(&D::IsDerivedFromSchema),
                    Place(&D::GetReferenceCount),
                    Place(&D::GetVersionGUID),
                    kDestructor});
}

TEST(InterfaceOrder, DefinitionIterator) {
    using I = IAssetDefinition::IIterator;
    ExpectOrder(0,
                {Place(&I::IsAtEnd), Place(&I::Next), Place(&I::Previous), Place(&I::GetDefinition),
                 Place(&I::GetName), Place(&I::GetUIName), Place(&I::GetKeywordCount),
                 Place(&I::GetKeyword), Place(&I::GetCategoryCount), Place(&I::GetCategory),
                 Place(&I::GetThumbnailCount), Place(&I::GetThumbnailName), Place(&I::GetThumbnail),
                 Place(&I::GetDescription), Place(&I::IsHidden), Place(&I::GetBaseSchema),
                 Place(&I::GetVersionGUID), kDestructor, Place(&I::Release)});
}

TEST(InterfaceOrder, Instance) {
    using A = IAssetInstance;
    ExpectOrder(6, {kDestructor,
                    Place(&A::Release),
                    Place(&A::BeginChange),
                    Place(&A::IsRevision),
                    Place(&A::EndChange),
                    Place(&A::CancelChange),
                    Place(&A::AddObserver),
                    Place(&A::RemoveObserver),
                    Place(&A::GetUIName),
                    Place(&A::SetUIName),
                    Place(&A::GetThumbnailCount),
                    Place(&A::GetThumbnailName),
                    Place(&A::GetThumbnail),
                    Place(&A::RemoveThumbnail),
                    Place(&A::SetThumbnail),
                    Place(&A::GetKeywordCount),
                    Place(&A::GetKeyword),
                    Place(&A::RemoveKeyword),
                    Place(&A::AddKeyword),
                    Place(&A::GetCategoryCount),
                    Place(&A::GetCategory),
                    Place(&A::RemoveCategory),
                    Place(&A::AddCategory),
                    Place(&A::GetDescription),
                    Place(&A::SetDescription),
                    Place(&A::GetDefinition),
                    Place(&A::AddReference),
                    Place(&A::Clone),
                    Place(&A::IsEqual),
                    Place(&A::GetSwatch),
                    Place(&A::SetSwatch),
                    Place(&A::CreateGenericInstance),
                    Place(&A::GetImplementationBinding),
                    Place(&A::GetSchema),
                    Place(&A::GetUIDefinitionCount),
                    Place(&A::GetUIDefinitionName),
                    Place(&A::GetUIDefinition),
                    Place(&A::GetImplementationCount),
                    Place(&A::GetImplementationIdentifier),
                    Place(&A::GetImplementationUri),
                    Place(&A::IsDerivedFromSchema),
                    Place(&A::GetReferenceCount),
                    Place(&A::GetVersionGUID),
                    Place(&A::SetVersionGUID),
                    Place(&A::RenewVersionGUID)});
    ExpectOrder(
        0, {Place(&IAssetObserver::OnValueChanged), Place(&IAssetObserver::OnConnectionChanged),
            Place(&IAssetObserver::OnAssetChanged), kDestructor});
}

TEST(InterfaceOrder, Library) {
    using L = IAssetLibrary;
    using Iterator = IAssetDefinition::IIterator;
    ExpectOrder(0, {Place(&L::GetIdentifier),
                    Place(&L::GetDefinitions),
                    Place(&L::GetDefinitionsById),
                    Place(&L::GetAssetTypeCount),
                    Place(&L::GetAssetType),
                    Place(&L::DeleteInstance),
                    Place<bool(IAssetDefinition*, const IString&, std::uint32_t, std::uint32_t)>(
                        &L::CreatePreset),
                    Place<bool(IAssetDefinition*, const IString&, bool)>(&L::CreatePreset),
                    Place<bool(IAssetDefinition*, std::uint32_t)>(&L::CreatePreset),
                    Place(&L::RemovePreset),
                    Place(&L::Reserved1),
                    Place(&L::Reserved2),
                    Place(&L::Reserved3),
                    Place(&L::Reserved4),
                    Place(&L::Reserved5),
                    Place(&L::Reserved6),
                    Place(&L::Reserved7),
                    Place(&L::CreateInstance),
                    Place(&L::IsReadOnly),
                    Place(&L::SetReadOnly),
                    Place(&L::GetVersion),
                    Place(&L::SetVersion),
                    Place<Iterator*(IAssetSchema*)>(&L::GetDefinitionsOfType),
                    Place<Iterator*(IAssetDefinition*)>(&L::GetDefinitionsOfType),
                    Place<Iterator*(IAssetInstance*)>(&L::GetDefinitionsOfType),
                    Place(&L::CopyDefinition),
                    Place<Iterator*(const IString&)>(&L::GetDefinitionsOfType),
                    Place(&L::AddResource),
                    Place(&L::ReplaceResource),
                    Place(&L::OpenResource),
                    Place(&L::AddUse),
                    Place(&L::Reserved8),
                    Place(&L::TakeWriteAccessOnCopy),
                    Place(&L::IsOnCopy),
                    Place(&L::EnableSharedAsset),
                    Place(&L::AddSharedAsset),
                    Place(&L::RemoveSharedAsset),
                    Place(&L::ShareDefinition),
                    Place(&L::UnshareDefinition),
                    Place(&L::GetSharedDefinitionsByName),
                    Place(&L::GetSharedDefinitions),
                    Place(&L::GetSharedDefinitionsByType),
                    Place(&L::GetSharedDefinitionsOfType),
                    kDestructor,
                    Place(&L::CreatePresetFromInstance),
                    Place(&L::AddSchema)});
}

TEST(InterfaceOrder, Manager) {
    using M = IAssetLibraryManager;
    ExpectOrder(0,
                {Place(&M::AddReference),
                 Place(&M::RemoveReference),
                 Place(&M::OpenLibrary),
                 Place<IAssetLibrary*(const IString&, const IString&, unsigned)>(&M::CreateLibrary),
                 Place<IAssetLibrary*(const IString&, unsigned)>(&M::CreateLibrary),
                 Place(&M::UnloadLibrary),
                 Place(&M::FindLibrary),
                 Place(&M::GetLibraryCount),
                 Place(&M::GetLibraryAt),
                 Place(&M::ReopenForWriting),
                 Place(&M::ReopenForReading),
                 Place(&M::OpenLibraryForWriting),
                 Place(&M::SaveLibrary),
                 Place(&M::CreateSerializer),
                 Place(&M::CreateDeSerializer),
                 Place(&M::SetCacheFolder),
                 Place(&M::GetPathResolver),
                 Place(&M::GetRegisteredLibraryCount),
                 Place(&M::GetRegisteredLibraryPath),
                 Place(&M::GetCacheFolder),
                 Place(&M::GetRegisteredLibraryVersion),
                 Place(&M::GetTextureLibraryPath),
                 Place(&M::IsTextureLibraryInstalled),
                 Place(&M::LoadSchemaFile),
                 Place(&M::CreateSchema),
                 Place(&M::GetSchemaCount),
                 Place(&M::GetSchemaAt),
                 Place(&M::FindSchema),
                 Place(&M::CreateInstanceFromSchema),
                 Place(&M::LoadSchemaFromFolder),
                 Place(&M::GetLocalizationManager),
                 Place(&M::IsLibraryUpgradeRequired),
                 Place(&M::OpenLibraryCopy),
                 Place(&M::OpenLibraryCopyForWriting),
                 Place(&M::CreateLibraryCopy),
                 kDestructor});
}

TEST(InterfaceOrder, PathResolver) {
    using R = IPathResolver;
    ExpectOrder(
        0, {Place(&R::GetSearchPathCount), Place(&R::GetSearchPath), Place(&R::RemoveSearchPath),
            Place(&R::AddSearchPath), Place(&R::InsertSearchPath), Place(&R::Resolve),
            Place(&R::AddResolver), kDestructor});
}

TEST(InterfaceOrder, Serializers) {
    ExpectOrder(0, {Place(&IAssetSerializer::Release), Place(&IAssetSerializer::RegisterAsset),
                    Place(&IAssetSerializer::Serialize), Place(&IAssetSerializer::SetOptions),
                    kDestructor});
    ExpectOrder(0, {Place(&IAssetDeSerializer::Release), Place(&IAssetDeSerializer::Deserialize),
                    Place(&IAssetDeSerializer::GetAsset), kDestructor});
    static_assert(sizeof(IAssetSerializer::Options) == 4);
}

TEST(InterfaceOrder, LocalizationHandlesAreAsWideAsAPointer) {
    static_assert(sizeof(ILocalization) == sizeof(void*));
    static_assert(sizeof(ILocalizationManager) == sizeof(void*));
    EXPECT_EQ(alignof(ILocalization), alignof(void*));
}

TEST(PropertyTypes, HaveFixedCodes) {
    const PropertyType in_order[] = {
        PropertyType::kUnspecified, PropertyType::kBinary, PropertyType::kString,
        PropertyType::kDateTime,    PropertyType::kUri,    PropertyType::kBoolean,
        PropertyType::kInteger,     PropertyType::kScalar, PropertyType::kColor,
        PropertyType::kTexture,     PropertyType::kChoice, PropertyType::kUuid,
        PropertyType::kReference};
    for (std::uint32_t code = 0; code != 13; ++code)
        EXPECT_EQ(static_cast<std::uint32_t>(in_order[code]), code);
}

TEST(PropertyFlagWord, HasFixedBits) {
    const std::uint32_t in_order[] = {PropertyFlags::kPublic,
                                      PropertyFlags::kReadOnly,
                                      PropertyFlags::kAllowMultipleValues,
                                      PropertyFlags::kDefinitionIteratorData,
                                      PropertyFlags::kLocal,
                                      PropertyFlags::kAllowConnectedAsset,
                                      PropertyFlags::kAllowConnectedAssets,
                                      PropertyFlags::kUIDefinition,
                                      PropertyFlags::kImplementation,
                                      PropertyFlags::kTextureURI,
                                      PropertyFlags::kUnits,
                                      PropertyFlags::kMetadata};
    for (unsigned bit = 0; bit != 12; ++bit)
        EXPECT_EQ(in_order[bit], 1u << bit);
    EXPECT_EQ(PropertyFlags::kConnectionMask, 0x60u);
}

}  // namespace
