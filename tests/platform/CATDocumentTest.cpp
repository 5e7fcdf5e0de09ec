// CATDocumentTest.cpp: a document set up as a record, seen through the host's interfaces.

#include "CATDocument.h"

#include "CATICkeParm.h"
#include "CATISamAnalysis.h"
#include "HostFixture.h"
#include "VOZStatus.h"

namespace
{
using Record = std::shared_ptr<VOZHostDocument>;

class Document : public HostFixture
{
protected:
    Document()
    {
        part->storageName = "door.CATPart";
        part->isPart = true;
        part->parameters = {{"TemplateName", "door\\TemplateName", "Default"}};
        analysis->storageName = "study.CATAnalysis";
        analysis->isAnalysis = true;
        analysis->links = {part};
        analysis->meshSet = {{part}, {nullptr}, {part, false}};
    }

    Record part = std::make_shared<VOZHostDocument>();
    Record analysis = std::make_shared<VOZHostDocument>();
};

TEST_F(Document, TheEditorShowsTheHostsCurrentDocument)
{
    EXPECT_EQ(CATFrmEditor::GetCurrentEditor(), nullptr);
    host.document = part;
    ASSERT_NE(CATFrmEditor::GetCurrentEditor(), nullptr);
    EXPECT_EQ(CATFrmEditor::GetCurrentEditor()->GetDocument(), part->Object());
    EXPECT_STREQ(part->Object()->StorageName().ConvertToChar(), "door.CATPart");
    host.document = analysis;
    EXPECT_EQ(CATFrmEditor::GetCurrentEditor()->GetDocument(), analysis->Object());
    VOZHost::Install(nullptr);
    EXPECT_EQ(CATFrmEditor::GetCurrentEditor(), nullptr);
}

TEST_F(Document, ARecordHasOneObjectForItsLife)
{
    CATDocument * const object = part->Object();
    EXPECT_EQ(part->Object(), object);
    object->AddRef();
    analysis.reset();
    part.reset();
    EXPECT_TRUE(object->StorageName().IsNull());
    EXPECT_TRUE(!CATInit_var(object));
    EXPECT_EQ(object->Release(), 0U);
}

TEST_F(Document, WhatItsKindLacksIsNotGiven)
{
    EXPECT_FALSE(!CATInit_var(part->Object()));
    EXPECT_TRUE(!CATISamAccess_var(part->Object()));
    EXPECT_FALSE(!CATISamAccess_var(analysis->Object()));
    EXPECT_TRUE(!CATICkeParm_var(analysis->Object()));
    CATBaseUnknown * object = analysis->Object();
    EXPECT_EQ(part->Object()->QueryInterface("CATISamAccess", &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(part->Object()->QueryInterface(nullptr, &object), E_NOINTERFACE);
    VOZHostDocument bare;
    EXPECT_TRUE(!CATInit_var(bare.Object())); // not held by a shared pointer: nothing could keep it alive
}

TEST_F(Document, AnAnalysisLeadsToManagerModelLinksAndMeshSet)
{
    CATISamAccess_var const access(analysis->Object());
    CATISamAnalysisContainer_var const container(access->GetAnalysisContainer());
    CATISamAnalysisManager_var const manager = container->GetAnalysisManager();
    CATListPtrCATDocument links;
    EXPECT_EQ(manager->GetLinkedDocuments(links), 0);
    ASSERT_EQ(links.Size(), 1);
    EXPECT_EQ(links[1], part->Object());
    EXPECT_EQ(links[0], nullptr);
    EXPECT_EQ(links[2], nullptr);

    CATISamAnalysisModel * raw = nullptr;
    ASSERT_EQ(manager->GetAnalysisModel(&raw), 0);
    CATISamAnalysisModel_var const model(CATISamAnalysisModel_var::Adopt(raw));
    CATISamAnalysisScan_var const scan(model);
    EXPECT_EQ(CATISamAnalysisModel_var(scan).Object() != nullptr, true); // back from the other face
    EXPECT_TRUE(scan->Scan("MSHMeshSet", 2).empty());
    EXPECT_TRUE(scan->Scan("Other", 3).empty());
    ASSERT_EQ(scan->Scan("MSHMeshSet", 3).size(), 1U);

    CATISamAnalysisSet_var const set(scan->Scan("MSHMeshSet", 3).front());
    auto const members = set->GetMembers();
    ASSERT_EQ(members.size(), 3U);
    CATISpecObject_var const support(CATIMSHMeshPart_var(members.at(0))->GetSupport());
    EXPECT_EQ(CATILinkableObject_var(support)->GetDocument(), part->Object());
    EXPECT_TRUE(!CATIMSHMeshPart_var(members.at(1))->GetSupport());
    EXPECT_TRUE(!CATIMSHMeshPart_var(members.at(2)));
}

TEST_F(Document, APartLeadsToItsContainerAndItsParameters)
{
    CATIContainer_var const root(
        CATBaseUnknown_var(CATBaseUnknown_var::Adopt(CATInit_var(part->Object())->GetRootContainer("CATIContainer"))));
    ASSERT_FALSE(!root);
    EXPECT_EQ(CATInit_var(part->Object())->GetRootContainer("CATIMSHMeshPart"), nullptr);
    EXPECT_FALSE(!CATICkeParmFactory_var(root));
    CATISpecObject_var const object = CATIPrtContainer_var(root)->GetPart();
    CATIParmPublisher_var const publisher(object);
    EXPECT_TRUE(publisher->GetPublished("CATIContainer").empty());
    auto const published = publisher->GetPublished("CATICkeParm");
    ASSERT_EQ(published.size(), 1U);
    CATICkeParm_var const parameter(published.front());
    EXPECT_STREQ(parameter->ShortName().ConvertToChar(), "TemplateName");
    EXPECT_STREQ(parameter->FullName().ConvertToChar(), "door\\TemplateName");
    EXPECT_STREQ(parameter->ValueAsText().ConvertToChar(), "Default");
    EXPECT_STREQ(parameter->IsA(), "CATICkeParm");
}

TEST_F(Document, AFaceKeepsTheRecordAlive)
{
    CATISamAccess_var const access(analysis->Object());
    std::weak_ptr<VOZHostDocument> const watched = analysis;
    analysis.reset();
    EXPECT_FALSE(watched.expired());
    EXPECT_FALSE(!access->GetAnalysisContainer());
}

TEST_F(Document, WhatIsWithheldIsNotGiven)
{
    part->withheld = {"CATInit"};
    EXPECT_TRUE(!CATInit_var(part->Object()));
    analysis->withheld = {"CATListPtrCATDocument"};
    CATISamAnalysisContainer_var const container(CATISamAccess_var(analysis->Object())->GetAnalysisContainer());
    CATListPtrCATDocument links;
    EXPECT_EQ(container->GetAnalysisManager()->GetLinkedDocuments(links), E_NOINTERFACE);
    EXPECT_EQ(links.Size(), 0);
}
} // namespace
