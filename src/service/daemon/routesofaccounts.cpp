// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The routes of the service itself, of sessions and of projects.
#include "service/daemon/handlers.h"
#include "service/daemon/routes.h"

namespace Zel::Service {

QList<Route> serviceRoutes()
{
    return {
        get("/healthz", health)
            .by(Access::Public)
            .on(Lane::Immediate)
            .named("health", "Whether the program answers")
            .says("Asks nobody else; it says nothing about the database.")
            .gives(200, "Health"),
        get("/readyz", readiness)
            .by(Access::Public)
            .on(Lane::Health)
            .named("readiness", "Whether the service can do its work")
            .says("The database answers and has the form this program needs, files can be stored, "
                  "and the service is not about to stop. It answers within two seconds.")
            .gives(200, "Readiness")
            .refuses("not-ready"),
        get("/metrics", metrics)
            .by(Access::Public)
            .on(Lane::Health)
            .named("metrics", "Figures for Prometheus")
            .says(
                "For callers on the same machine, or, where the service was given a token for it, "
                "for whoever brings that.")
            .givesText(200, "text/plain", "Prometheus text format 0.0.4.")
            .refuses("not-allowed")
            .refuses("bad-key"),
        get("/v1/openapi.json", interfaceDocument)
            .by(Access::Public)
            .on(Lane::Immediate)
            .named("interfaceDocument", "This document")
            .gives(200, "InterfaceDocument")
            .gives(304, "", "It is as it was when it had the tag that `If-None-Match` names."),
    };
}

QList<Route> sessionRoutes()
{
    return {
        post("/v1/sessions", createSession)
            .by(Access::Public)
            .on(Lane::SignIn)
            .named("signIn", "Sign in")
            .says("A session ends 12 hours after its last call and 7 days after signing in. Five "
                  "wrong attempts of a name at one address are free; each further one doubles the "
                  "wait, from 2 seconds to 15 minutes.")
            .takes("SignIn")
            .gives(201, "NewSession")
            .refuses("bad-credentials")
            .refuses("too-many-attempts"),
        del("/v1/sessions/current", endSession)
            .by(Access::Session)
            .named("signOut", "End the session")
            .gives(204),
        put("/v1/sessions/current/account", chooseAccount)
            .by(Access::Session)
            .named("chooseAccount", "Choose the account that the session works for")
            .takes("AccountChoice")
            .gives(204)
            .refuses("account-refused"),
        get("/v1/accounts", listAccounts)
            .by(Access::Session)
            .named("listAccounts", "The accounts of the person, by name")
            .gives(200, "AccountList"),
    };
}

QList<Route> projectRoutes()
{
    const RouteParameter project{"guid", "Guid", "The project."};
    return {
        get("/v1/project-types", listProjectTypes)
            .named("listProjectTypes", "The types of projects that the account has, in their order")
            .gives(200, "ProjectTypeList"),
        get("/v1/projects", listProjects)
            .named("listProjects", "The projects of one type, by name")
            .query("type", "WantedProjectType", "The type whose projects are wanted.")
            .paged()
            .gives(200, "ProjectList"),
        post("/v1/projects", createProject)
            .named("createProject", "Make a project")
            .says("The guid is chosen by the caller, so that the same call again, after an answer "
                  "that was lost, makes no second project. Not for viewers.")
            .takes("NewProject")
            .gives(201, "CreatedProject")
            .gives(200, "CreatedProject", "The same call made it before.")
            .refuses("not-allowed")
            .refuses("conflict"),
        get("/v1/projects/{guid}/published", projectPublished)
            .named("projectPublished", "Whether a project is published")
            .place(project)
            .gives(200, "Published")
            .refuses("not-found"),
        get("/v1/projects/{guid}/deployments", listDeployments)
            .named("listDeployments", "The deployments of a project, the newest first")
            .place(project)
            .paged()
            .gives(200, "DeploymentList")
            .refuses("not-found"),
    };
}

} // namespace Zel::Service
