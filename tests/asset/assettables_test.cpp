#include "assets/asset/assettables.h"

#include "asset/support.h"

namespace korvanet::platform::assets {

class AssetTablesTest : public AssetTest {
protected:
    template <class T>
    bool Makes(TableKind kind) {
        const intrusive_ptr<PropertyTableImp> table(&MakeTable(world.context, kind));
        return dynamic_cast<T*>(table.get()) != nullptr && table->Kind() == kind;
    }
};

TEST_F(AssetTablesTest, MakesATableOfEachKind) {
    EXPECT_TRUE(Makes<KRVTSchemaDefinition>(TableKind::kSchema));
    EXPECT_TRUE(Makes<AssetDefinition>(TableKind::kDefinition));
    EXPECT_TRUE(Makes<AssetInstance>(TableKind::kInstance));
}

}  // namespace korvanet::platform::assets
